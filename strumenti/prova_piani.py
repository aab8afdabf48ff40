"""Tries the floors check on small made-up trees; run it with strumenti/piani.py --prova."""

import sys

from piani import Controllo

QTCORE = {"QString", "QObject", "QtGlobal", "qstring.h"}

# Ciò che è lecito, comprese le forme che un controllo grossolano scambierebbe per offese.
LECITI = {
    "main.cpp": '#include "app/MDITras.h"\n#include "platform/motore/ado.h"\n',
    "app/MDITras.cpp": '#include "MDITras.h"\n#include "browser/fmTabella.h"\n',
    "app/MDITras.h": '#include "contesto/contesto.h"\n',
    "contesto/contesto.h": '#include "contesto/finestre.h"\n#include "db/lavoro/codici.h"\n',
    "contesto/finestre.h": "#pragma once\n",
    "editors/fmVoce.cpp": (
        "// SELECT Codice FROM Voci, una volta chiesto con QMessageBox\n"
        '#include "contesto/finestre.h"\n'
        '/*\n#include "browser/fmTabella.h"\n*/\n'
        "const int molti = 1'000'000; const char c = '\"';\n"
        'const char *domanda = "Selezionare la voce e la data da cui partire?";\n'
        'const char *errore = "Aprire QFileDialog";\n'
    ),
    "db/lavoro/codici.h": '#include "platform/motore/ado.h"\n#include <QString>\n#include <QtCore/QObject>\n',
    "db/lavoro/codici.cpp": 'auto s = "SELECT Codice FROM Voci";\n',
    "platform/motore/ado.cpp": '#include "ado.h"\n#include <sqlite3.h>\n',
    "platform/motore/ado.h": "#include <qstring.h>\n#include <QtGlobal>\n",
    "platform/finestre/messaggi.cpp": "#include <QMessageBox>\nvoid f() { QMessageBox box; }\n",
    "platform/finestre/dialoghi.h": "class QFileDialog;\n",
    "tests/tst_voce.cpp": (
        '#include "editors/fmVoce.h"\n#include <QMessageBox>\n#include <sqlite3.h>\n'
        'auto s = "DELETE FROM Voci";\n'
    ),
}

# Nome, file da aggiungere, offese attese come coppie (file, genere).
OFFESE = [
    ("a lower floor", {"db/lavoro/x.h": '#include "editors/x.h"\n'}, [("db/lavoro/x.h", "piano")]),
    ("angle brackets", {"texts/x.h": "#include <browser/x.h>\n"}, [("texts/x.h", "piano")]),
    ("dots", {"texts/x.h": '#include "../editors/x.h"\n', "editors/x.h": ""},
     [("texts/x.h", "piano")]),
    ("one step", {"editors/x.h": '# include "browser/x.h"\n'}, [("editors/x.h", "piano")]),
    ("app from below", {"browser/x.h": '#include "app/x.h"\n'}, [("browser/x.h", "piano")]),
    ("db to context", {"db/lavoro/x.h": '#include "contesto/contesto.h"\n'}, [("db/lavoro/x.h", "piano")]),
    ("context upwards", {"contesto/contesto.cpp": '#include "texts/x.h"\n'},
     [("contesto/contesto.cpp", "piano")]),
    ("context to app", {"contesto/finestre.cpp": '#include "app/MDITras.h"\n'},
     [("contesto/finestre.cpp", "piano")]),
    ("platform to db", {"platform/motore/x.h": '#include "db/lavoro/x.h"\n'}, [("platform/motore/x.h", "piano")]),
    ("main included", {"app/x.cpp": '#include "main.cpp"\n'}, [("app/x.cpp", "piano")]),
    ("tests included", {"app/x.cpp": '#include "tests/x.h"\n'}, [("app/x.cpp", "piano")]),
    ("unknown folder", {"util/x.cpp": ""}, [("util/x.cpp", "piano")]),
    ("unknown root source", {"altro.cpp": ""}, [("altro.cpp", "piano")]),
    ("widget in db", {"db/lavoro/x.h": "#include <QtWidgets/QLabel>\n"}, [("db/lavoro/x.h", "finestre")]),
    ("widget by class", {"db/lavoro/x.h": "#include <QLabel>\n"}, [("db/lavoro/x.h", "finestre")]),
    ("widget by file", {"db/lavoro/x.h": "#include <qwidget.h>\n"}, [("db/lavoro/x.h", "finestre")]),
    ("widget module", {"db/lavoro/x.h": "#include <QtGui>\n"}, [("db/lavoro/x.h", "finestre")]),
    ("widget in ado", {"platform/motore/ado.cpp": "#include <QFont>\n"},
     [("platform/motore/ado.cpp", "finestre")]),
    ("window room in db", {"db/lavoro/x.cpp": '#include "platform/finestre/messaggi.h"\n'},
     [("db/lavoro/x.cpp", "finestre")]),
    ("plain SQL", {"browser/x.cpp": 'auto s = "select Codice from Voci";\n'},
     [("browser/x.cpp", "sql")]),
    ("SQL in two lines", {"browser/x.cpp": 'auto s = u"Select Codice"\n    u" from Voci";\n'},
     [("browser/x.cpp", "sql")]),
    ("raw SQL", {"app/x.cpp": 'auto s = R"sql(\nUPDATE Voci\n SET Numero = 1)sql";\n'},
     [("app/x.cpp", "sql")]),
    ("SQL in pieces", {"editors/x.cpp": 'auto s = "SELECT " + c + " FROM Voci";\n'},
     [("editors/x.cpp", "sql")]),
    ("PRAGMA", {"app/x.cpp": 'esegui("pragma user_version");\n'}, [("app/x.cpp", "sql")]),
    ("SQL after digit separators", {"app/x.cpp": "f(1'000, 'x', \"VACUUM\", 2'000);\n"},
     [("app/x.cpp", "sql")]),
    ("SQL after a quote character", {"app/x.cpp": "f('\"', \"VACUUM\");\n"},
     [("app/x.cpp", "sql")]),
    ("message box", {"editors/x.cpp": "void f() { QMessageBox::critical(0, a, b); }\n"},
     [("editors/x.cpp", "messaggi")]),
    ("current connection", {"db/lavoro/x.cpp": "void f() { connessione().Close(); l.connessione(); }\n"},
     [("db/lavoro/x.cpp", "corrente")]),
    ("message box header", {"app/x.cpp": "#include <QMessageBox>\n"}, [("app/x.cpp", "messaggi")]),
    ("message box in platform", {"platform/motore/x.cpp": "QMessageBox *b;\n"},
     [("platform/motore/x.cpp", "messaggi")]),
    ("file dialog", {"app/x.cpp": "QFileDialog d;\n"}, [("app/x.cpp", "dialoghi")]),
    ("desktop from a window", {"texts/x.cpp": "QDesktopServices::openUrl(x);\n"},
     [("texts/x.cpp", "desktop")]),
    ("input dialog", {"texts/x.cpp": "QInputDialog d;\n"}, [("texts/x.cpp", "dialoghi")]),
    ("engine in db", {"db/lavoro/x.cpp": "#include <sqlite3.h>\n"}, [("db/lavoro/x.cpp", "motore")]),
    ("no room", {"platform/x.cpp": ""}, [("platform/x.cpp", "piano")]),
    ("wrong room", {"platform/lingua/x.cpp": '#include "platform/motore/ado.h"\n'},
     [("platform/lingua/x.cpp", "stanza")]),
    ("no room in db", {"db/x.cpp": ""}, [("db/x.cpp", "piano")]),
    ("wrong room in db", {"db/lavoro/x.cpp": '#include "db/atto/atto.h"\n'},
     [("db/lavoro/x.cpp", "stanza")]),
]


def main():
    """Runs every made-up tree; status 1 unless each gives exactly its own offences."""
    falliti = 0
    for nome, aggiunti, attese in [("nothing wrong", {}, []), *OFFESE]:
        offese = Controllo({**LECITI, **aggiunti}, QTCORE).esegui()
        trovate = sorted({(percorso, genere) for percorso, _, genere, _ in offese})
        if trovate != sorted(attese):
            falliti += 1
            print(f"{nome}: expected {attese}, found {trovate}", file=sys.stderr)
    print(f"Floors check tried on {len(OFFESE) + 1} trees, {falliti} with the wrong answer.")
    return 1 if falliti else 0
