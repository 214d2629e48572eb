#pragma once
// The ordered, keyed list behind the library's collections: members in insertion order, found
// by position (from 1) or by key. Keys are compared as exact strings.
#include "base/MarloError.h"
#include "base/mErrCodes.h"

#include <QHash>
#include <QList>
#include <QString>
#include <memory>

template <typename T>
class cKeyedList {
public:
    using Member = std::shared_ptr<T>;

    qint32 count() const { return static_cast<qint32>(m_members.size()); }
    bool contains(const QString& key) const { return m_index.contains(key); }
    // The member under key, or nothing; never raises.
    Member find(const QString& key) const { return m_index.value(key); }

    // Raises "subscript out of range" for a position outside 1..count.
    Member at(qint32 position) const
    {
        checkPosition(position);
        return m_members[position - 1];
    }
    // Raises "invalid procedure call" for an unknown key.
    Member byKey(const QString& key) const
    {
        const Member member = m_index.value(key);
        if (!member)
            RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
        return member;
    }
    // Raises "duplicate key" when key is taken; the list is then unchanged.
    void add(const QString& key, Member member)
    {
        if (m_index.contains(key))
            RaiseRuntimeError(mErrCodes::RT_DUPLICATE_KEY);
        m_index.insert(key, member);
        m_keys.append(key);
        m_members.append(std::move(member));
    }
    Member removeAt(qint32 position)
    {
        checkPosition(position);
        const qsizetype i = position - 1;
        Member member = m_members.takeAt(i);
        m_index.remove(m_keys.takeAt(i));
        return member;
    }
    Member removeKey(const QString& key)
    {
        const qsizetype i = m_keys.indexOf(key);
        if (i < 0)
            RaiseRuntimeError(mErrCodes::RT_INVALID_CALL);
        return removeAt(static_cast<qint32>(i + 1));
    }
    void clear()
    {
        m_members.clear();
        m_keys.clear();
        m_index.clear();
    }
    const QList<Member>& members() const { return m_members; }

private:
    void checkPosition(qint32 position) const
    {
        if (position < 1 || position > count())
            RaiseRuntimeError(mErrCodes::RT_SUBSCRIPT);
    }

    QList<Member> m_members;
    QList<QString> m_keys;
    QHash<QString, Member> m_index;
};
