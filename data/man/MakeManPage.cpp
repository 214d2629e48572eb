// Build tool: makes a program's manual page (section 1) from the program's own --help text, so
// that the page lists exactly the commands, fields and options the program knows.
//   MakeManPage PROGRAM NAME SUMMARY VERSION DATE OUTPUT EXTRA...
// PROGRAM is run with --help (no window, no leak report, preferences in a folder of its own);
// NAME is the page's name, SUMMARY its one line in NAME, DATE yyyy-mm-dd, each EXTRA a
// hand-written roff file: what stands before its first .SH is added to DESCRIPTION, its sections
// follow the ones made from the help, in the order the files are given. The page is written
// beside OUTPUT first and renamed into place.
//
// The help is read as the front ends print it (QCommandLineParser's layout):
//   Usage: PROGRAM SYNOPSIS
//   description lines, up to the first blank line
//   blocks separated by blank lines: "Title:" alone on its first line makes a section of
//   "  term  text" items (two spaces before the term, two or more after it; a line indented
//   deeper continues the item above); "Exit status: ..." makes EXIT STATUS; other lines are
//   paragraphs of DESCRIPTION, with items of their own under them.
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

// Text that roff prints as it is: a backslash, and a dash that starts an option or a negative
// number, are escaped; a line that would start with a control character is guarded.
QString prose(const QString& text)
{
    QString out = text;
    out.replace(QLatin1Char('\\'), QLatin1String("\\e"));
    static const QRegularExpression leadingDashes(QStringLiteral("(^|[\\s(\\['\"/])(-+)(?=[A-Za-z0-9])"));
    QString escaped;
    qsizetype at = 0;
    for (auto it = leadingDashes.globalMatch(out); it.hasNext();) {
        const auto m = it.next();
        escaped += out.mid(at, m.capturedStart(2) - at) + QString(QLatin1String("\\-")).repeated(m.capturedLength(2));
        at = m.capturedEnd(2);
    }
    escaped += out.mid(at);
    if (escaped.startsWith(QLatin1Char('.')) || escaped.startsWith(QLatin1Char('\'')))
        escaped.prepend(QLatin1String("\\&"));
    return escaped;
}

// Command-line syntax: literal words bold, placeholders (upper-case words, <words>, a lone
// lower-case word in brackets such as [options]) italic, brackets and separators roman. Spaces
// inside brackets do not break, so that "[--Name N]" stays on one line.
QString syntax(const QString& text)
{
    static const QRegularExpression token(QStringLiteral(
        "<([^>]+)>"                      // 1: <placeholder>
        "|([A-Z](?:[A-Z0-9_-]*[A-Z0-9])?)(?![a-z])" // 2: PLACEHOLDER
        "|([A-Za-z0-9-][A-Za-z0-9._:-]*)" // 3: literal
        "|(\\s+)"                        // 4: space
        "|(.)"));                        // 5: anything else
    QString out;
    int depth = 0;
    for (auto it = token.globalMatch(text); it.hasNext();) {
        const auto m = it.next();
        if (m.hasCaptured(1)) {
            out += QLatin1String("\\fI") + prose(m.captured(1)) + QLatin1String("\\fR");
        } else if (m.hasCaptured(2)) {
            out += QLatin1String("\\fI") + m.captured(2).replace(QLatin1Char('-'), QLatin1String("\\-")) + QLatin1String("\\fR");
        } else if (m.hasCaptured(3)) {
            QString word = m.captured(3);
            const bool alone = m.capturedStart(3) > 0 && text.at(m.capturedStart(3) - 1) == QLatin1Char('[') &&
                               m.capturedEnd(3) < text.size() && text.at(m.capturedEnd(3)) == QLatin1Char(']') &&
                               word.at(0).isLower();
            word.replace(QLatin1Char('-'), QLatin1String("\\-"));
            // \% keeps a name whole: it is typed as it stands.
            out += (alone ? QLatin1String("\\fI\\%") : QLatin1String("\\fB\\%")) + word + QLatin1String("\\fR");
        } else if (m.hasCaptured(4)) {
            out += depth > 0 ? QStringLiteral("\\ ") : QStringLiteral(" ");
        } else {
            const QChar c = m.captured(5).at(0);
            if (c == QLatin1Char('['))
                ++depth;
            else if (c == QLatin1Char(']') && depth > 0)
                --depth;
            out += c == QLatin1Char('\\') ? QStringLiteral("\\e") : QString(c);
        }
    }
    if (out.startsWith(QLatin1Char('.')) || out.startsWith(QLatin1Char('\'')))
        out.prepend(QLatin1String("\\&"));
    return out;
}

int indentOf(const QString& line)
{
    int n = 0;
    while (n < line.size() && line.at(n) == QLatin1Char(' '))
        ++n;
    return n;
}

// One block of the help turned into roff: paragraphs and the items under them.
class BlockWriter {
public:
    explicit BlockWriter(bool termsAreArguments) : m_arguments(termsAreArguments) {}

    void line(const QString& line)
    {
        const int indent = indentOf(line);
        const QString text = line.trimmed();
        if (indent == 0) {
            flushItem();
            m_paragraph += (m_paragraph.isEmpty() ? QString() : QStringLiteral(" ")) + text;
        } else if (indent > 2 && m_hasItem) {
            m_body += (m_body.isEmpty() ? QString() : QStringLiteral(" ")) + text;
        } else {
            flushParagraph();
            flushItem();
            static const QRegularExpression gap(QStringLiteral("\\s{2,}"));
            // A term too long for its column touches its text with one space: an option or a
            // KEY=VALUE item followed by words in lower case is still a term and its text.
            static const QRegularExpression touching(QStringLiteral("^((?:-|[a-z]+=)\\S*) ([a-z]+ .*)$"));
            // So does a command whose options in brackets follow it after one space.
            static const QRegularExpression options(QStringLiteral("^(\\S.*?) (\\[-.*)$"));
            const auto m = gap.match(text);
            const auto o = options.match(text);
            const auto t = touching.match(text);
            if (m.hasMatch()) {
                m_term = text.left(m.capturedStart());
                m_body = text.mid(m.capturedEnd());
            } else if (o.hasMatch() || t.hasMatch()) {
                m_term = (o.hasMatch() ? o : t).captured(1);
                m_body = (o.hasMatch() ? o : t).captured(2);
            } else {
                m_term = text;
                m_body.clear();
            }
            m_hasItem = true;
        }
    }

    QString finish()
    {
        flushParagraph();
        flushItem();
        return m_out;
    }

private:
    void flushParagraph()
    {
        if (m_paragraph.isEmpty())
            return;
        m_out += QLatin1String(".PP\n") + prose(m_paragraph) + QLatin1Char('\n');
        m_paragraph.clear();
    }
    void flushItem()
    {
        if (!m_hasItem)
            return;
        m_out += QLatin1String(".TP\n");
        m_out += (m_arguments ? QLatin1String("\\fI") + prose(m_term) + QLatin1String("\\fR") : syntax(m_term)) + QLatin1Char('\n');
        // The words after a command are its syntax (options in brackets); anything else explains it.
        if (m_body.startsWith(QLatin1Char('[')) || m_body.startsWith(QLatin1Char('-')))
            m_out += syntax(m_body) + QLatin1Char('\n');
        else if (!m_body.isEmpty())
            m_out += prose(m_body) + QLatin1Char('\n');
        m_hasItem = false;
        m_term.clear();
        m_body.clear();
    }

    bool m_arguments;
    QString m_paragraph;
    bool m_hasItem = false;
    QString m_term;
    QString m_body;
    QString m_out;
};

// "0 done, 1 error, ..." as a list of codes; any other text as it is.
QString exitStatus(QString text)
{
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    static const QRegularExpression code(QStringLiteral("^(\\d+) (.+)$"));
    QString list;
    for (const QString& part : text.split(QStringLiteral(", "))) {
        const auto m = code.match(part.trimmed());
        if (!m.hasMatch())
            return QLatin1String(".PP\n") + prose(text) + QLatin1String(".\n");
        list += QLatin1String(".TP\n.B ") + m.captured(1) + QLatin1Char('\n') + prose(m.captured(2)) + QLatin1Char('\n');
    }
    return list;
}

struct Page {
    QString synopsis;
    QString description;
    QList<QPair<QString, QString>> sections; // title, roff
    QString exitStatus;
};

bool parse(const QString& help, const QString& name, Page* page, QString* error)
{
    QStringList lines = help.split(QLatin1Char('\n'));
    for (QString& line : lines)
        while (line.endsWith(QLatin1Char(' ')) || line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    static const QRegularExpression usage(QStringLiteral("^Usage: (\\S+)\\s*(.*)$"));
    const auto u = usage.match(lines.value(0));
    if (!u.hasMatch()) {
        *error = QStringLiteral("the help does not start with \"Usage: \"");
        return false;
    }
    if (QFileInfo(u.captured(1)).fileName() != name) {
        *error = QStringLiteral("the help is the usage of %1, not of %2").arg(u.captured(1), name);
        return false;
    }
    page->synopsis = u.captured(2);

    // The blocks, each a list of lines; the first one is the description under the usage line.
    QList<QStringList> blocks{{}};
    for (qsizetype i = 1; i < lines.size(); ++i) {
        if (lines[i].isEmpty()) {
            if (!blocks.last().isEmpty())
                blocks.append(QStringList());
        } else {
            blocks.last().append(lines[i]);
        }
    }
    static const QRegularExpression title(QStringLiteral("^([A-Z][A-Za-z ]*):$"));
    static const QRegularExpression exitLine(QStringLiteral("^Exit status: (.+)$"));
    for (const QStringList& block : blocks) {
        if (block.isEmpty())
            continue;
        const auto t = title.match(block.first());
        if (t.hasMatch()) {
            BlockWriter writer(t.captured(1) == QLatin1String("Arguments"));
            for (qsizetype i = 1; i < block.size(); ++i)
                writer.line(block[i]);
            page->sections.append({t.captured(1).toUpper(), writer.finish()});
            continue;
        }
        BlockWriter writer(false);
        for (const QString& line : block) {
            const auto e = exitLine.match(line);
            if (e.hasMatch())
                page->exitStatus += exitStatus(e.captured(1));
            else
                writer.line(line);
        }
        page->description += writer.finish();
    }
    return true;
}

QString roffName(const QString& name) { return QString(name).replace(QLatin1Char('-'), QLatin1String("\\-")); }

QString render(const Page& page, const QString& name, const QString& summary, const QString& version, const QString& date,
               const QString& extraDescription, const QString& extraSections)
{
    QString out;
    out += QStringLiteral(".\\\" Made at build time by MakeManPage from \"%1 --help\" and data/man; do not edit.\n").arg(name);
    out += QStringLiteral(".TH %1 1 %2 \"Marlo %3\" \"User Commands\"\n").arg(roffName(name.toUpper()), date, version);
    out += QStringLiteral(".SH NAME\n%1 \\- %2\n").arg(roffName(name), prose(summary));
    out += QStringLiteral(".SH SYNOPSIS\n.B %1\n%2\n").arg(roffName(name), syntax(page.synopsis));
    out += QLatin1String(".SH DESCRIPTION\n") + page.description + extraDescription;
    for (const auto& [title, roff] : page.sections)
        out += QLatin1String(".SH ") + title + QLatin1Char('\n') + roff;
    if (!page.exitStatus.isEmpty())
        out += QLatin1String(".SH \"EXIT STATUS\"\n") + page.exitStatus;
    out += extraSections;
    if (!out.endsWith(QLatin1Char('\n')))
        out += QLatin1Char('\n');
    return out;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream err(stderr);
    const QStringList args = app.arguments();
    if (args.size() < 8) {
        err << "usage: MakeManPage PROGRAM NAME SUMMARY VERSION DATE OUTPUT EXTRA...\n";
        return 2;
    }
    const QString& program = args[1];
    const QString& name = args[2];
    const QString& output = args[6];

    QString extraDescription;
    QString extraSections;
    for (qsizetype i = 7; i < args.size(); ++i) {
        QFile extraFile(args[i]);
        if (!extraFile.open(QIODevice::ReadOnly | QIODevice::Text)) {
            err << "cannot read " << args[i] << ": " << extraFile.errorString() << '\n';
            return 1;
        }
        // Its comments say what the file is for; the page has its own.
        QString extra;
        for (const QString& line : QString::fromUtf8(extraFile.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            if (!line.startsWith(QLatin1String(".\\\"")))
                extra += line + QLatin1Char('\n');
        static const QRegularExpression firstSection(QStringLiteral("^\\.SH\\b"), QRegularExpression::MultilineOption);
        const auto s = firstSection.match(extra);
        extraDescription += s.hasMatch() ? extra.left(s.capturedStart()) : extra;
        extraSections += s.hasMatch() ? extra.mid(s.capturedStart()) : QString();
    }

    QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    // The pages are English, whatever language the machine that builds them speaks.
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.remove(QStringLiteral("LANGUAGE"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path());
    environment.insert(QStringLiteral("MARLO_HOME"), home.path());
    // In a sanitizer build the help is still the help: a leak report at exit is not its business.
    const QString asan = environment.value(QStringLiteral("ASAN_OPTIONS"));
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       asan + (asan.isEmpty() ? QString() : QStringLiteral(":")) + QStringLiteral("detect_leaks=0"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, {QStringLiteral("--help")});
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        err << program << " --help failed: " << process.errorString() << '\n' << QString::fromLocal8Bit(process.readAllStandardError());
        return 1;
    }
    const QString help = QString::fromUtf8(process.readAllStandardOutput());

    Page page;
    QString error;
    if (!parse(help, name, &page, &error)) {
        err << program << " --help: " << error << '\n';
        return 1;
    }
    const QString partial = output + QStringLiteral(".part");
    QFile file(partial);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(render(page, name, args[3], args[4], args[5], extraDescription, extraSections).toUtf8()) < 0 ||
        !file.flush()) {
        err << "cannot write " << partial << ": " << file.errorString() << '\n';
        return 1;
    }
    file.close();
    QFile::remove(output);
    if (!QFile::rename(partial, output)) {
        err << "cannot write " << output << '\n';
        QFile::remove(partial);
        return 1;
    }
    return 0;
}
