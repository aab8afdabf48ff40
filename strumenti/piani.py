#!/usr/bin/env python3
"""Checks the layout of the sources: which floor includes which, and what stays behind its door.

Usage: strumenti/piani.py          check the tree this script stands in
       strumenti/piani.py --prova  try the check itself on small made-up trees

Prints one line for each offence and ends with status 1 when there is any.
"""

import os
import re
import subprocess
import sys
from pathlib import Path

# Dal basso in alto: chi include può nominare solo il proprio piano e quelli che lo precedono.
PIANI = [
    "platform", "db", "scambio", "contesto", "immagini", "texts", "editors", "stampa", "atti",
    "browser", "app", "main",
]
FUORI_DAI_PIANI = {"tests", "demo", "strumenti", "bench", "faults"}
SENZA_FINESTRE = {"db", "scambio"}

# Le stanze: quali altre dello stesso piano ciascuna può nominare, e se può avere finestre.
STANZE = {
    "platform/errore": (set(), False),
    "platform/lingua": ({"errore"}, False),
    "platform/disco": ({"errore"}, False),
    "platform/anteriore": ({"errore"}, False),
    "platform/motore": ({"errore", "disco"}, False),
    "platform/riparazione": ({"errore", "disco", "motore"}, False),
    "platform/finestre": ({"errore", "lingua", "disco"}, True),
    "platform/elaboratore": ({"errore", "lingua", "finestre"}, True),
    "db/schema": (set(), False),
    "db/storia": ({"schema"}, False),
    "db/lavoro": ({"schema", "storia"}, False),
    "db/elenchi": ({"schema"}, False),
    "db/atto": ({"schema", "lavoro"}, False),
    "db/formule": ({"schema", "lavoro", "atto"}, False),
    "db/archivio": ({"schema", "lavoro", "storia"}, False),
}
PIANI_CON_STANZE = {nome.split("/")[0] for nome in STANZE}

PORTE = [
    ("messaggi", "platform/finestre/messaggi", r"\b(QMessageBox|QErrorMessage)\b"),
    ("desktop", "platform/finestre/desktop", r"\b(QDesktopServices|QProcess)\b"),
    ("dialoghi", "platform/finestre/dialoghi", r"\b(QFileDialog|QInputDialog)\b"),
]

# Quale archivio sia il corrente lo sanno le finestre: sotto di loro ognuno lavora sul suo.
CORRENTE = ("corrente", "db/archivio/connessioni", r"(?<![\w.>&])(connessione|archivi)\(\)")

# La seconda riga prende i pezzi di un'istruzione composta a tratti: lì le maiuscole contano.
SQL = re.compile(
    r"(?i:\b(SELECT .* FROM|INSERT INTO|UPDATE .* SET|DELETE FROM|PRAGMA|CREATE TABLE"
    r"|BEGIN IMMEDIATE|VACUUM)\b)|\b(SELECT|WHERE|(ORDER|GROUP) BY|(LEFT|INNER) JOIN)\b",
    re.S,
)

# Commenti, stringhe (anche grezze), caratteri; i numeri vengono prima per i loro apostrofi.
PEZZI = re.compile(
    r"""(?P<commento>//[^\n]*|/\*.*?\*/)
      | (?P<grezza>\b(?:u8|u|U|L)?R"(?P<orlo>[^()\s\\]{0,16})\((?P<cruda>.*?)\)(?P=orlo)")
      | (?P<stringa>"(?P<testo>(?:\\.|[^"\\\n])*)")
      | (?P<numero>\b\d[\w.']*)
      | (?P<carattere>'(?:\\.|[^'\\\n])+')""",
    re.S | re.X,
)
INCLUSIONE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*[<"]([^>"\n]+)[>"]', re.M)


def in_bianco(testo):
    return re.sub(r"[^\n]", " ", testo)


def senza_commenti(testo):
    """The source with its comments turned into blanks; lines stay where they are."""
    return PEZZI.sub(lambda p: in_bianco(p[0]) if p["commento"] else p[0], testo)


def senza_letterali(testo):
    """The source with comments and texts turned into blanks; lines stay where they are."""
    return PEZZI.sub(lambda p: p[0] if p["numero"] else in_bianco(p[0]), testo)


def letterali(testo):
    """The (offset, text) pairs of a source's string literals; adjacent ones are one."""
    uniti, fine = [], None
    testo = senza_commenti(testo)
    for pezzo in PEZZI.finditer(testo):
        if not (pezzo["stringa"] or pezzo["grezza"]):
            continue
        contenuto = pezzo["testo"] if pezzo["stringa"] else pezzo["cruda"]
        if fine is not None and re.fullmatch(r"\s*(u8|u|U|L)?", testo[fine : pezzo.start()]):
            uniti[-1] = (uniti[-1][0], uniti[-1][1] + contenuto)
        else:
            uniti.append((pezzo.start(), contenuto))
        fine = pezzo.end()
    return uniti


def piano(percorso):
    """The floor of a source, "" for one outside the floors, None for one in no known place."""
    cartella = percorso.split("/")[0]
    if percorso == "main.cpp":
        return "main"
    if cartella in FUORI_DAI_PIANI:
        return ""
    return cartella if "/" in percorso and cartella in PIANI else None


def stanza(percorso):
    """The room of a source on a floor that has rooms, as "floor/room"; "" for one elsewhere."""
    nomi = percorso.split("/")
    if nomi[0] not in PIANI_CON_STANZE or len(nomi) < 2:
        return ""
    return nomi[0] + "/" + os.path.splitext(nomi[1])[0]


def senza_finestre(percorso):
    """Whether the source belongs to the library without widgets."""
    return percorso.split("/")[0] in SENZA_FINESTRE or not STANZE.get(stanza(percorso), (None, True))[1]


def nomi_di_qtcore():
    """The header names of Qt Core as installed; ends the program where Qt is not found."""
    for programma in ("qmake6", "qtpaths6"):
        try:
            risposta = subprocess.run(
                [programma, "-query", "QT_INSTALL_HEADERS"],
                capture_output=True, text=True, check=True,
            )
            return set(os.listdir(Path(risposta.stdout.strip(), "QtCore")))
        except (OSError, subprocess.CalledProcessError):
            continue
    sys.exit("The headers of Qt 6 were not found: run strumenti/prepara.sh build first.")


class Controllo:
    """One look at a tree of files {path: text}; `offese` lists (path, line, kind, words)."""

    def __init__(self, file, qtcore):
        self.file = file
        self.qtcore = qtcore
        self.offese = []

    def esegui(self):
        for percorso, testo in sorted(self.file.items()):
            if not percorso.endswith((".cpp", ".h")):
                continue
            suo = piano(percorso)
            if suo is None or (suo in PIANI_CON_STANZE and stanza(percorso) not in STANZE):
                self.segnala(percorso, 1, "piano", "this source stands on no floor")
            elif suo:
                self.guarda_inclusioni(percorso, testo, suo)
                self.guarda_porte(percorso, testo)
                if suo not in ("platform", "db"):
                    self.guarda_sql(percorso, testo)
        return self.offese

    def segnala(self, percorso, riga, genere, parole):
        self.offese.append((percorso, riga, genere, parole))

    def guarda_inclusioni(self, percorso, testo, suo):
        for trovato in INCLUSIONE.finditer(senza_commenti(testo)):
            riga = testo.count("\n", 0, trovato.start(1)) + 1
            nome = trovato[1]
            vicino = os.path.normpath(os.path.join(os.path.dirname(percorso), nome))
            altro = vicino if vicino in self.file else os.path.normpath(nome)
            self.guarda_piani(percorso, riga, suo, altro)
            self.guarda_stanze(percorso, riga, altro)
            if nome == "sqlite3.h" and stanza(percorso) != "platform/motore":
                self.segnala(percorso, riga, "motore", "the engine's header outside its room")
            if senza_finestre(percorso):
                self.guarda_finestre(percorso, riga, nome, altro)

    def guarda_piani(self, percorso, riga, suo, altro):
        nomi = altro.split("/")
        suo_piano = piano(altro)
        if suo_piano == "" and nomi[0] in FUORI_DAI_PIANI:
            self.segnala(percorso, riga, "piano", f"the program includes {altro}")
        elif suo_piano and PIANI.index(suo_piano) > PIANI.index(suo):
            self.segnala(percorso, riga, "piano", f"{suo} includes the higher floor's {altro}")

    def guarda_stanze(self, percorso, riga, altro):
        sua, altra = stanza(percorso), stanza(altro)
        if sua not in STANZE or not altra or altra == sua or piano(altro) != piano(percorso):
            return
        if altra.split("/")[1] not in STANZE[sua][0]:
            self.segnala(percorso, riga, "stanza", f"{sua} includes {altro}")

    def guarda_finestre(self, percorso, riga, nome, altro):
        di_qt = re.match(r"Qt\w*/|Q[A-Z]|q[a-z]+\.h$|Qt", nome)
        da_qtcore = nome.startswith("QtCore/") or nome in self.qtcore
        if di_qt and not da_qtcore and altro not in self.file:
            self.segnala(percorso, riga, "finestre", f"{nome} is not of Qt Core")
        if STANZE.get(stanza(altro), (None, False))[1]:
            self.segnala(percorso, riga, "finestre", f"{altro} has windows")

    def guarda_porte(self, percorso, testo):
        codice = senza_letterali(testo)
        # Le inclusioni fra virgolette spariscono con i letterali, quelle fra angoli restano.
        for genere, porta, nomi in PORTE + [CORRENTE] * senza_finestre(percorso):
            if os.path.splitext(percorso)[0] == porta:
                continue
            for trovato in re.finditer(nomi, codice):
                riga = codice.count("\n", 0, trovato.start()) + 1
                self.segnala(percorso, riga, genere, f"{trovato[0]} outside {porta}")

    def guarda_sql(self, percorso, testo):
        for inizio, contenuto in letterali(testo):
            if SQL.search(contenuto):
                riga = testo.count("\n", 0, inizio) + 1
                self.segnala(percorso, riga, "sql", "a statement outside db/ and platform/")


def file_del_progetto(radice):
    """The text files under version control, or new and not ignored, as {path: text}."""
    elenco = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=radice, capture_output=True, check=True,
    )
    file = {}
    for nome in filter(None, elenco.stdout.decode().split("\0")):
        percorso = radice / nome
        if percorso.is_file() and b"\0" not in (contenuto := percorso.read_bytes()):
            file[nome] = contenuto.decode("utf-8", "replace")
    return file


def main():
    if sys.argv[1:] == ["--prova"]:
        sys.dont_write_bytecode = True
        import prova_piani

        return prova_piani.main()
    if sys.argv[1:]:
        print(__doc__, file=sys.stderr)
        return 2
    file = file_del_progetto(Path(__file__).resolve().parent.parent)
    offese = Controllo(file, nomi_di_qtcore()).esegui()
    for percorso, riga, genere, parole in offese:
        print(f"{percorso}:{riga}: [{genere}] {parole}")
    sorgenti = sum(nome.endswith((".cpp", ".h")) for nome in file)
    print(f"Floors: {len(offese)} offences in {sorgenti} sources, {len(file)} text files.")
    return 1 if offese or not sorgenti else 0


if __name__ == "__main__":
    sys.exit(main())
