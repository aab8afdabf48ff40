#!/usr/bin/env python3
"""Plants faults in a copy of the tree, one at a time, and sees whether what should find them does.

Usage: strumenti/guasti_piantati.py [--custodia | --stanze] [--prima N]
  --custodia  only the faults of keeping files, which the programme of faults must find
  --stanze    only those of the rooms, which the tests of the room must find
  --prima N   only the first N of each

Each fault is an edit of one source, built with the "lavoro" preset in build/piantati and run.
Prints a line for each; ends with status 1 when one passes unseen, 2 when a fault has no place any
more in the sources or what finds it fails without it.
"""

import argparse
import os
import shutil
import subprocess
import sys
from pathlib import Path

RADICE = Path(__file__).resolve().parent.parent
ALBERO = RADICE / "build/piantati"
COSTRUITO = ALBERO / "build/lavoro"
SECONDI = 600

# Il salvataggio si spezza qui: ciò che è già scritto resta anche se il resto non riesce.
DUE_COMMIT = (
    "    m_connessione.Execute({QStringLiteral(\"COMMIT\"), {}, {}});\n"
    "    m_connessione.Execute({QStringLiteral(\"BEGIN IMMEDIATE\"), {}, {}});\n"
)

# Nome, sorgente, ciò che dice, ciò che direbbe sbagliato.
CUSTODIA = [
    ("a copy is not synced", "platform/disco/provvisorio.cpp",
     "    if (::fsync(*a) != 0)\n        fallisci(nuovo, errno);\n", ""),
    # Il motore porta da sé sul disco (fdatasync) il file in cui compatta, dopo l'ultima scrittura e
    # prima di togliere il suo giornale: a mancare soltanto, la nostra non perderebbe nulla. Il
    # guasto è che manchino tutte e due.
    ("a compact copy is not synced", "platform/motore/jro.cpp",
     ("    provvisorio::avanza(passo, attesi, attesi);\n    provvisorio::sincronizza(nuovo);\n",
      "            origine.Execute({QStringLiteral(\"VACUUM"),
     ("    provvisorio::avanza(passo, attesi, attesi);\n",
      "            origine.Execute({QStringLiteral(\"PRAGMA synchronous = OFF\"), {}, {}});\n"
      "            origine.Execute({QStringLiteral(\"VACUUM")),
    ("the engine does not sync", "platform/motore/ado.cpp",
     "PRAGMA synchronous = FULL", "PRAGMA synchronous = OFF"),
    ("the check of a copy is skipped", "platform/motore/jro.cpp",
     'if (esito != QStringLiteral("ok"))', 'if (esito.isNull())'),
    ("a save is two commits", "db/lavoro/lavoro.cpp",
     "    if (siLegaAllOperatore(record, prima))\n", DUE_COMMIT
     + "    if (siLegaAllOperatore(record, prima))\n"),
    ("an act is two commits", "db/atto/atto_scrittura.cpp",
     "            iscrive(Posto::Coniuge,", DUE_COMMIT.replace("m_connessione", "m_lavoro.connessione()")
     + "            iscrive(Posto::Coniuge,"),
    ("a membership is a commit of its own", "db/lavoro/lavoro.cpp",
     "    const bool coniuge = posto == Posto::Coniuge;\n",
     DUE_COMMIT + "    const bool coniuge = posto == Posto::Coniuge;\n"),
    ("a journal is left at restore", "db/archivio/custodia.cpp",
     "    togliGiornale(arrivo);\n    nuovo.prendeIlPosto(suo, soloSeLibera);\n}\n\nvoid crea",
     "    nuovo.prendeIlPosto(suo, soloSeLibera);\n}\n\nvoid crea"),
]

# Come sopra, e la prova della stanza che deve accorgersene.
STANZE = [
    ("wrong comparison of pages", "platform/lingua/italiano.cpp",
     "decimali.front() >= u'5'", "decimali.front() > u'5'", "tst_italiano"),
    ("off by one in the first year", "platform/lingua/italiano.cpp",
     "data.year() < annoMinimo", "data.year() <= annoMinimo", "tst_italiano"),
    ("hours take the wrong day", "platform/lingua/italiano.cpp",
     "QDate(1899, 12, 30)", "QDate(1899, 12, 31)", "tst_italiano"),
    ("date and time cut at the wrong place", "platform/lingua/italiano.cpp",
     "ridotto.mid(taglio + 1)", "ridotto.mid(taglio + 2)", "tst_italiano"),
    ("lists sorted the wrong way", "db/elenchi/elenco.cpp",
     "uno.toDouble() < altro.toDouble()", "uno.toDouble() > altro.toDouble()", "tst_elenchi"),
    ("empty values sorted last", "db/elenchi/elenco.cpp",
     "return specie(uno) < specie(altro)", "return specie(uno) > specie(altro)", "tst_elenchi"),
    ("a record not found is the first", "db/elenchi/elenco.cpp",
     "chiave.toLongLong() : -1", "chiave.toLongLong() : 0", "tst_elenchi"),
    ("a code given twice", "db/lavoro/codici.cpp",
     "QString::number(massimo.toLongLong() + 1)", "QString::number(massimo.toLongLong())",
     "tst_dati"),
    ("the last code is refused late", "db/lavoro/codici.cpp",
     "massimo.toLongLong() >= std::numeric_limits<qint32>::max()",
     "massimo.toLongLong() > std::numeric_limits<qint32>::max()", "tst_dati"),
    ("swapped columns of the operator's link", "db/lavoro/codici.cpp",
     "{operatore, record}", "{record, operatore}", "tst_editori"),
    ("a transaction is not rolled back", "platform/motore/transazione.cpp",
     '"ROLLBACK TO passo" : "ROLLBACK"', '"ROLLBACK TO passo" : "COMMIT"', "tst_lavoro"),
    ("a transaction is not exclusive", "platform/motore/transazione.cpp",
     ': "BEGIN IMMEDIATE"', ': "BEGIN"', "tst_lavoro"),
    ("one spouse is enough", "db/lavoro/famiglie.cpp",
     "return principale && coniuge;", "return principale || coniuge;", "tst_famiglie"),
    ("a member twice in a couple", "db/lavoro/famiglie.cpp",
     "if (inserito == ruolo)", "if (inserito != ruolo)", "tst_famiglie"),
    ("owner and name of an attachment swapped", "db/lavoro/binari.cpp",
     ("file.proprietario},", "\"Nome\"), file.nome}"),
     ("file.nome},", "\"Nome\"), file.proprietario}"), "tst_allegati"),
    ("a file with a name taken is overwritten", "platform/disco/shell.cpp",
     "for (int numero = 2; preso(candidato); ++numero)",
     "for (int numero = 2; numero < 2 && preso(candidato); ++numero)", "tst_custodia"),
    ("a newer file opens", "db/archivio/custodia.cpp",
     "    rifiutaPiuNuovo(connessione, versioneSchema);\n", "", "tst_custodia"),
    ("a skipped step of deletion", "db/lavoro/eliminazione.cpp",
     "coppieSenzaFamiglia{{u\"FamiglieConiugi\", u\"FamiglieGenitori\"}",
     "coppieSenzaFamiglia{{u\"FamiglieConiugi\"}", "tst_eliminazione"),
    ("orphans are forgotten before their turn", "db/lavoro/eliminazione.cpp",
     "    if (passi.contains(&individui))\n        connessione.Execute",
     "    if (!passi.isEmpty())\n        connessione.Execute", "tst_eliminazione"),
    ("names left behind are forgotten", "db/lavoro/eliminazione.cpp",
     "return passoDi(passi, posto) > ultimaTolta(passi, tabella, posto);",
     "return passoDi(passi, posto) + 99 > ultimaTolta(passi, tabella, posto);",
     "tst_eliminazione"),
    ("rows out of their tree stay lost", "platform/riparazione/salvataggio.cpp",
     "    righe.orfane(Uso::Ignoto);\n", "", "tst_salvataggio"),
    ("pairs out of their tree stay lost", "platform/riparazione/salvataggio.cpp",
     "    coppie.orfane();\n", "", "tst_salvataggio"),
    ("what a damaged file lost is not told", "db/archivio/conversione.cpp",
     "return lette == annunciate && rifiutate == 0 && righeGuaste == 0 && pagineGuaste == 0 &&",
     "return rifiutate == 0 &&", "tst_conversione_danni"),
    ("days of the earlier format keep their hour", "db/archivio/corrispondenza.cpp",
     "specie != catalogo::Specie::Giorno", "specie != catalogo::Specie::Lungo",
     "tst_conversione"),
    ("tables of a copy are not compared", "platform/motore/jro.cpp",
     "if (tabelle != tabelleDi(copia))", "if (tabelle.isEmpty())", "tst_custodia"),
]


def esegue(comando, **altro):
    """Runs a command in the copy; returns whether it ended well, and what it said."""
    try:
        esito = subprocess.run(
            comando, cwd=ALBERO, capture_output=True, text=True, timeout=SECONDI, check=False, **altro
        )
    except subprocess.TimeoutExpired:
        return False, "it does not end"
    return esito.returncode == 0, esito.stdout + esito.stderr


def copia_albero():
    """Makes the copy like the tree; files that have not changed keep their dates."""
    nomi = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=RADICE, capture_output=True, text=True, check=True,
    ).stdout.split("\0")
    for nome in filter(None, nomi):
        da, a = RADICE / nome, ALBERO / nome
        if da.is_file() and not (a.is_file() and a.read_bytes() == da.read_bytes()):
            a.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(da, a)
    presenti = set(filter(None, nomi))
    for file in ALBERO.rglob("*.[ch]*"):
        nome = file.relative_to(ALBERO).as_posix()
        if not nome.startswith("build/") and file.is_file() and nome not in presenti:
            file.unlink()


def trova(chi):
    """Builds and runs what should find a fault; returns (built, found nothing)."""
    costruito, detto = esegue(["cmake", "--build", "--preset", "lavoro", "--target", chi])
    if not costruito:
        return False, detto
    if chi == "guasti":
        return True, esegue([COSTRUITO / "faults/guasti", "8", "1"])[0]
    prova = COSTRUITO / "tests/cartelle" / chi / chi
    return True, esegue([prova], env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})[0]


def pianta(guasto, chi):
    """Plants one fault, looks for it and takes it away; returns what happened in a word."""
    _, sorgente, giusto, sbagliato = guasto[:4]
    file = ALBERO / sorgente
    testo = guasto_testo = file.read_text()
    coppie = [(giusto, sbagliato)] if isinstance(giusto, str) else zip(giusto, sbagliato)
    for prima, dopo in coppie:
        if guasto_testo.count(prima) != 1:
            return "NO PLACE"
        guasto_testo = guasto_testo.replace(prima, dopo)
    file.write_text(guasto_testo)
    try:
        costruito, sano = trova(chi)
    finally:
        file.write_text(testo)
    if not costruito:
        return "NOT BUILT"
    return "PASSED UNSEEN" if sano else "caught"


def main():
    lettore = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    lettore.add_argument("--custodia", action="store_true")
    lettore.add_argument("--stanze", action="store_true")
    lettore.add_argument("--prima", type=int)
    scelte = lettore.parse_args()
    tutti = not scelte.custodia and not scelte.stanze
    guasti = [(uno, "guasti") for uno in CUSTODIA[: scelte.prima] if tutti or scelte.custodia]
    guasti += [(uno, uno[4]) for uno in STANZE[: scelte.prima] if tutti or scelte.stanze]

    copia_albero()
    fatto, detto = esegue(["cmake", "--preset", "lavoro", "--log-level=WARNING"])
    if not fatto:
        sys.exit(detto)
    for chi in dict.fromkeys(chi for _, chi in guasti):
        costruito, sano = trova(chi)
        if not costruito or sano is not True:
            print(f"{chi} fails without any fault." if costruito else sano)
            return 2
    esiti = []
    for guasto, chi in guasti:
        esiti.append(pianta(guasto, chi))
        print(f"{esiti[-1]:14} {chi:18} {guasto[0]} ({guasto[1]})", flush=True)
    print(f"Planted faults: {esiti.count('caught')} caught of {len(esiti)}.")
    senza_posto = esiti.count("NO PLACE") + esiti.count("NOT BUILT")
    return 2 if senza_posto else 1 if "PASSED UNSEEN" in esiti else 0


if __name__ == "__main__":
    sys.exit(main())
