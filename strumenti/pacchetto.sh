#!/usr/bin/env bash
# Usage: strumenti/pacchetto.sh [--install]
# Builds the Debian package in build/pacchetto and checks what lies in it: what lintian warns of,
# desktop entry, file type, software-centre entry, manual, manual page. With --install, and as root
# on Debian, it also installs the package with apt-get, starts it from its desktop entry on a virtual
# display as an ordinary user, opens an archive as a double-click does, closes it and removes the
# package again.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
installare=no
case ${1-} in
--install) installare=si ;;
"") ;;
*)
    echo "Unknown option: $1" >&2
    exit 2
    ;;
esac
if ! command -v dpkg-deb >/dev/null; then
    echo "There is no dpkg here: the Debian package is not built." >&2
    exit 1
fi

gruppi=(build use package)
[ "$installare" = no ] || gruppi+=(screen)
strumenti/prepara.sh "${gruppi[@]}"
cmake --preset rilascio
cmake --build --preset rilascio
rm -rf build/pacchetto
cpack --config build/rilascio/CPackConfig.cmake -B build/pacchetto
pacchetto=$(echo build/pacchetto/tarvola_*.deb)

echo "Contents of $pacchetto:"
dpkg-deb --info "$pacchetto"
dpkg-deb --contents "$pacchetto"
aperto=build/pacchetto/aperto
dpkg-deb --extract "$pacchetto" "$aperto"
dati=$aperto/usr/share

echo "Checks:"
# Il pacchetto non entra nell'archivio di Debian: nessuna segnalazione lo aspetta lì.
lintian --allow-root --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs \
    "$pacchetto"
desktop-file-validate "$dati/applications/tarvola.desktop"
appstreamcli validate --no-net "$dati/metainfo/org.example.tarvola.metainfo.xml"
xmllint --noout "$dati/mime/packages/tarvola.xml"
XDG_DATA_HOME=$(realpath "$dati") update-mime-database "$dati/mime"
grep -qx 'application/x-tarvola-archive:\*.tvd' "$dati/mime/globs"
gunzip --stdout "$dati/man/man1/tarvola.1.gz" | mandoc -T lint -W warning
for file in tarvola/tarvola.mod doc/tarvola/html/index.html doc/tarvola/html/htm/inizio.htm \
    icons/hicolor/scalable/apps/tarvola.svg \
    icons/hicolor/scalable/mimetypes/application-x-tarvola-archive.svg; do
    test -s "$dati/$file"
done

# Le difese del programma, come si vedono nel suo file: prima riga il comando, poi ciò che mostra.
programma=$aperto/usr/bin/tarvola
while read -r opzione attesa; do
    if ! readelf -W "$opzione" "$programma" | grep -- "$attesa" >/dev/null; then
        echo "The program was built without $attesa (readelf $opzione)" >&2
        exit 1
    fi
done <<'FINE'
-h DYN
-l GNU_RELRO
-d BIND_NOW
-s __stack_chk_fail
FINE
# Le forme controllate lasciano una traccia solo dove il compilatore non sa già che basta lo spazio.
if grep '"command"' build/rilascio/compile_commands.json | grep -v -- -D_FORTIFY_SOURCE=2 >/dev/null; then
    echo "Part of the program was built without _FORTIFY_SOURCE" >&2
    exit 1
fi

[ "$installare" = si ] || exit 0
if [ "$(id -u)" -ne 0 ]; then
    echo "Not root: the package is not installed here."
    exit 0
fi
if dpkg-query -W -f='${db:Status-Status}' tarvola 2>/dev/null | grep -qx installed; then
    # What a check cut short left behind goes; what a person installed stays.
    if [ "${CI-}" != true ]; then
        echo "Tarvola is installed here already; its package is not put in the place of that one." >&2
        exit 1
    fi
    DEBIAN_FRONTEND=noninteractive apt-get purge -y -qq -o Dpkg::Use-Pty=0 tarvola
fi

echo "Installed:"
export DEBIAN_FRONTEND=noninteractive
togli()
{
    apt-get purge -y -qq -o Dpkg::Use-Pty=0 tarvola
}
trap togli EXIT
apt-get install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 \
    "$(realpath "$pacchetto")"
mapfile -t installati < <(dpkg-query -L tarvola)
strumenti/schermo.sh strumenti/prova_installato.sh
trap - EXIT
togli
# Le cartelle comuni restano, i file no; né il programma ne ha lasciati accanto a sé.
for file in "${installati[@]}"; do
    if [ -f "$file" ] || [[ $file == */tarvola ]] && [ -e "$file" ]; then
        echo "Left behind after the removal: $file" >&2
        exit 1
    fi
done
echo "The package was installed, used and removed."
