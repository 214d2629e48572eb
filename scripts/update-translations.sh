#!/usr/bin/env bash
# Brings the translations in translations/ up to date with the sources and says what is left to
# translate. Every text the sources mark for translation (tr(), QT_TR_NOOP, QT_TRANSLATE_NOOP,
# QCoreApplication::translate) is added to each translations/marlo_LANG.ts as unfinished; texts the
# sources no longer have are dropped. Then translate the unfinished entries (Qt Linguist:
# `linguist translations/marlo_de.ts`, or any editor) and run the script again: it lists what is
# still unfinished and exits 1 while anything is. The build makes the .qm files from the .ts files.
#
#   scripts/update-translations.sh          every language in translations/
#   scripts/update-translations.sh fr       also starts translations/marlo_fr.ts for French
set -euo pipefail
shopt -s nullglob
here=$(cd "$(dirname "$0")/.." && pwd)
lupdate=${LUPDATE:-/usr/lib/qt6/bin/lupdate}
[ -x "$lupdate" ] || lupdate=$(command -v lupdate)

files=("$here"/translations/marlo_*.ts)
for language in "$@"; do
  [ -e "$here/translations/marlo_$language.ts" ] || files+=("$here/translations/marlo_$language.ts")
done

# No source locations: a file that changes only where texts change merges well.
(cd "$here" && "$lupdate" -silent -locations none -no-obsolete src -ts "${files[@]}")

python3 - "${files[@]}" <<'PY'
import sys
import xml.etree.ElementTree as ET

left = 0
for path in sys.argv[1:]:
    root = ET.parse(path).getroot()
    for context in root.iter('context'):
        for message in context.iter('message'):
            translation = message.find('translation')
            if translation is None or translation.get('type') == 'unfinished' or not (translation.text or list(translation)):
                left += 1
                print(f"{path.rsplit('/', 1)[-1]}: {context.findtext('name')}: {message.findtext('source')!r}")
print(f"{left} unfinished" if left else "every text is translated")
sys.exit(1 if left else 0)
PY
