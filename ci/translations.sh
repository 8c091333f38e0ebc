#!/usr/bin/env bash
# Brings the catalogues ui/translations/*.ts up to the texts in the sources: translations.sh
# Fails if a catalogue isn't, or if a translation is missing or loses a %1: translations.sh check
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
lupdate=$(qtpaths6 --query QT_HOST_BINS)/lupdate
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

update() {
    "$lupdate" -silent -no-obsolete -locations none ui/src ui/include -I ui/include -ts "$@" 2>"$work/log"
    # Of a class without Q_OBJECT, whose tr() would look in another class's texts.
    [ ! -s "$work/log" ] || { cat "$work/log" >&2; exit 1; }
}

[ "${1-}" = check ] || { update ui/translations/*.ts; exit 0; }
cp ui/translations/*.ts "$work"
update "$work"/*.ts
for catalogue in "$work"/*.ts; do
    diff -q "ui/translations/${catalogue##*/}" "$catalogue" >/dev/null ||
        { echo "${catalogue##*/}: run ci/translations.sh and translate what is new" >&2; exit 1; }
done
python3 - ui/translations/*.ts <<'PYTHON'
import re, sys
import xml.etree.ElementTree as xml

faults = []
for path in sys.argv[1:]:
    for message in xml.parse(path).iter("message"):
        source, translation = message.findtext("source"), message.find("translation")
        forms = [form.text or "" for form in translation.iter("numerusform")] or [translation.text or ""]
        for form in forms:
            if translation.get("type") or not form:
                faults.append(f"{path}: not translated: {source}")
            elif set(re.findall(r"%(?:L?\d|n)", source)) != set(re.findall(r"%(?:L?\d|n)", form)):
                faults.append(f"{path}: other placeholders than the source: {source}")
sys.exit("\n".join(faults) or 0)
PYTHON
echo "translations: complete"
