#!/usr/bin/env python3
"""Runs clang-tidy over the sources that a change can have touched.

Usage: strumenti/lint.py                what differs from where this branch left main; on main
                                        itself, where no base is sure, everything (see below)
       strumenti/lint.py --base COMMIT  what differs from that commit
       strumenti/lint.py --all          every source
       strumenti/lint.py FILE...        these sources, and what includes these headers
       strumenti/lint.py --minutes N    as the first, with N minutes in the place of ten

On main, as in a fresh clone of it, what the last landing changed is always looked at (a header
through one source); then all the rest, what landed last first, until ten minutes have passed, and
those left for another time are counted.

A changed header counts for every source that includes it, a changed .clang-tidy for all of them.
What was found clean is looked at again only when its text, a header of ours that it includes, its
command, the rules or the libraries have changed (build/lint keeps the marks). Sources are read
without precompiled headers, so that a missing #include is seen.
Prints what clang-tidy finds, then the counts; ends with status 1 when it found anything.
"""

import argparse
import hashlib
import json
import os
import re
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

RADICE = Path(__file__).resolve().parent.parent
LINT = "clang-tidy-14"
MINUTI = 10
INCLUSIONE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"\n]+)"', re.M)
# Ciò che dipende dal modo di costruire e non da ciò che il sorgente dice.
DA_TOGLIERE = re.compile(
    r" (-Winvalid-pch|-include \S*cmake_pch\.hxx|-fsanitize=\S+|-fno-sanitize-recover=\S+"
    r"|-fno-omit-frame-pointer|-O\d|-g\d?)(?= )"
)
CONTEGGIO = re.compile(r"^\d+ warnings?( and \d+ errors?)? generated\.\n", re.M)


def git(*argomenti):
    return subprocess.run(
        ["git", *argomenti], cwd=RADICE, capture_output=True, text=True, check=True
    ).stdout


def sorgenti():
    """The sources and headers under version control, or new and not ignored, as {path: text}."""
    nomi = git("ls-files", "-z", "--cached", "--others", "--exclude-standard", "*.cpp", "*.h")
    percorsi = [nome for nome in nomi.split("\0") if nome and (RADICE / nome).is_file()]
    return {nome: (RADICE / nome).read_text("utf-8", "replace") for nome in percorsi}


def inclusi_da(file):
    """{path: the headers of ours that it includes, directly or not, and itself}."""
    diretti = {}
    for percorso, testo in file.items():
        cartella = os.path.dirname(percorso)
        proposti = [
            nome
            for scritto in INCLUSIONE.findall(testo)
            for nome in (os.path.normpath(os.path.join(cartella, scritto)), scritto)
        ]
        diretti[percorso] = {nome for nome in proposti if nome in file}
    tutti = {}
    for percorso in file:
        visti, da_vedere = set(), [percorso]
        while da_vedere:
            nome = da_vedere.pop()
            if nome not in visti:
                visti.add(nome)
                da_vedere.extend(diretti[nome])
        tutti[percorso] = visti
    return tutti


def base():
    """Where this branch left main; nothing on main itself, or where main is not known."""
    for principale in ("origin/main", "main"):
        try:
            nodo = git("merge-base", "HEAD", principale).strip()
        except subprocess.CalledProcessError:
            continue
        if nodo != git("rev-parse", "HEAD").strip():
            return nodo
    return None


def approdi(file):
    """{path: how many landings ago it last changed}; 0 also for what no landing names."""
    quando, quanti = {}, -1
    # Con -m e il primo genitore una fusione porta tutto ciò che è arrivato con lei.
    for riga in git("log", "--first-parent", "-m", "--name-only", "--format=%x00").splitlines():
        if riga == "\0":
            quanti += 1
        elif riga:
            quando.setdefault(riga, quanti)
    non_registrati = set(git("diff", "--name-only", "HEAD").splitlines())
    return {nome: 0 if nome in non_registrati else quando.get(nome, 0) for nome in file}


def da_guardare(scelte, file, inclusi):
    """The sources to look at, and how many of them must be whatever the time."""
    tutti = sorted(nome for nome in file if nome.endswith(".cpp"))
    if scelte.all:
        return tutti, len(tutti)
    toccati = {os.path.relpath(os.path.abspath(nome), RADICE) for nome in scelte.file}
    if not toccati:
        punto = scelte.base or base()
        if punto is None:
            quando = approdi(file)
            ultimo = {nome: min(quando[uno] for uno in inclusi[nome]) for nome in tutti}
            tutti.sort(key=lambda nome: (ultimo[nome], quando[nome]))
            dovuti = [nome for nome in tutti if quando[nome] == 0]
            # Di un header cambiato basta chi lo fa leggere una volta.
            for header in (nome for nome in file if nome.endswith(".h") and quando[nome] == 0):
                if not any(header in inclusi[nome] for nome in dovuti):
                    dovuti += [nome for nome in tutti if header in inclusi[nome]][:1]
            return dovuti + [nome for nome in tutti if nome not in set(dovuti)], len(dovuti)
        try:
            toccati = set(git("diff", "--name-only", "-z", punto).split("\0"))
        except subprocess.CalledProcessError:
            print(f"There is no commit {punto} to compare with: looking at every source.")
            return tutti, len(tutti)
        toccati |= set(git("ls-files", "-z", "--others", "--exclude-standard").split("\0"))
    if not any(os.path.basename(nome) == ".clang-tidy" for nome in toccati):
        tutti = [nome for nome in tutti if inclusi[nome] & toccati]
    return tutti, len(tutti)


def comandi(cartella):
    """Writes the compile commands the lint reads; returns them as {path: words for the mark}."""
    voci = {}
    for voce in json.loads((cartella / "compile_commands.json").read_text()):
        percorso = os.path.relpath(voce["file"], RADICE)
        voce["command"] = DA_TOGLIERE.sub("", voce["command"])
        voci.setdefault(percorso, voce)
    (cartella / "lint").mkdir(exist_ok=True)
    (cartella / "lint/compile_commands.json").write_text(json.dumps(list(voci.values())))
    taglio = re.compile(r" -o .*", re.S)
    return {
        percorso: taglio.sub("", voce["command"]).replace(str(cartella), "").replace(str(RADICE), "")
        for percorso, voce in voci.items()
    }


def versioni():
    librerie = ["pkg-config", "--modversion", "Qt6Core", "sqlite3", "hunspell"]
    dette = [
        subprocess.run(comando, capture_output=True, text=True, check=False).stdout
        for comando in ([LINT, "--version"], ["g++", "-dumpfullversion"], librerie)
    ]
    return "".join(dette) + (RADICE / ".clang-tidy").read_text()


def impronta(nome, comune, comando, file, inclusi):
    somma = hashlib.sha256((comune + comando).encode())
    for percorso in sorted(inclusi[nome]):
        somma.update(f"\0{percorso}\0{file[percorso]}".encode())
    return somma.hexdigest()


def prepara(cartella):
    """Makes sure the generated files that the sources include are there."""
    if not (cartella / "build.ninja").exists():
        subprocess.run(
            ["cmake", "--preset", cartella.name, "--log-level=WARNING"], cwd=RADICE, check=True
        )
    fatto = subprocess.run(
        ["cmake", "--build", cartella, "--target", "autogen"], capture_output=True, text=True
    )
    if fatto.returncode != 0:
        sys.exit(fatto.stdout + fatto.stderr)


def main():
    lettore = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    lettore.add_argument("--all", action="store_true")
    lettore.add_argument("--base")
    lettore.add_argument("--minutes", type=float, default=MINUTI)
    lettore.add_argument("file", nargs="*")
    scelte = lettore.parse_args()

    file = sorgenti()
    inclusi = inclusi_da(file)
    elenco, dovuti = da_guardare(scelte, file, inclusi)
    fino_a_quando = time.monotonic() + scelte.minutes * 60
    dovuti = set(elenco[:dovuti])
    if not elenco:
        print("Lint: no source is touched.")
        return 0
    presenti = [p for p in ("lavoro", "prova") if (RADICE / "build" / p / "build.ninja").exists()]
    cartella = RADICE / "build" / (presenti[0] if presenti else "lavoro")
    prepara(cartella)
    noti = comandi(cartella)
    orfani = [nome for nome in elenco if nome not in noti]
    for nome in orfani:
        print(f"{nome}: no target compiles it")

    puliti = RADICE / "build/lint"
    puliti.mkdir(exist_ok=True)
    comune = versioni()

    def guarda(nome):
        segno = puliti / impronta(nome, comune, noti[nome], file, inclusi)
        if segno.exists():
            return "clean"
        if nome not in dovuti and time.monotonic() > fino_a_quando:
            return "left"
        esito = subprocess.run(
            [LINT, "-quiet", "-p", str(cartella / "lint"), nome],
            cwd=RADICE, capture_output=True, text=True,
        )
        detto = esito.stdout + CONTEGGIO.sub("", esito.stderr)
        if esito.returncode == 0 and not detto.strip():
            segno.touch()
        elif detto.strip():
            print(detto, end="", flush=True)
        return esito.returncode == 0

    with ThreadPoolExecutor(os.cpu_count()) as operai:
        esiti = list(operai.map(guarda, [nome for nome in elenco if nome in noti]))
    male = esiti.count(False) + len(orfani)
    rimasti = esiti.count("left")
    print(
        f"Lint: {len(elenco) - rimasti} sources, {esiti.count('clean')} clean since before, "
        f"{male} at fault."
    )
    if rimasti:
        print(f"Not looked at, for want of time and unchanged since earlier landings: {rimasti}.")
    return 1 if male else 0


if __name__ == "__main__":
    sys.exit(main())
