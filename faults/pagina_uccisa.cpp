// Un atto scritto sulla pagina coi soli tasti, e il programma ucciso mentre lo salva per passare al
// seguente: a ciascuna delle chiamate con cui cambia i file. Poi nell'archivio l'atto c'è intero, o
// non c'è.
//   pagina_uccisa GIRI [SEME]
// Con meno di quaranta giri si prova una chiamata ogni tante.

#include "app/avvio.h"
#include "atti/fmScheda.h"
#include "db/archivio/connessioni.h"
#include "db/schema/modello.h"
#include "faults/inganni.h"
#include "faults/righe.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace modTarvola;

namespace
{

constexpr unsigned secondiAlPiu = 60;
constexpr int giriPerTutte = 40;

QString archivioIn(const QString &cartella)
{
    return cartella + QStringLiteral("/pagina.tvd");
}

// Che cosa si scrive, e in quale registro. Le caselle sono quelle che il tabulatore incontra.
struct Scena {
    const char *nome;
    const char *registro;
    const char *voce; // vuota: un atto nuovo
    QList<std::pair<QString, QString>> caselle;
};

QList<Scena> scene()
{
    const QString lungo = QStringLiteral("L'anno 1750 è nato, à dì 3. ").repeated(60);
    const auto nome = [](const char *casella) { return QString::fromUtf8(casella); };
    return {
        {"a new baptism",
         "R1",
         "",
         {{nome("Atto: Codice"), nome("7")},
          {nome("Atto: Data"), nome("11/10/1813")},
          {nome("Battezzato/a: Nome"), nome("Giosuè")},
          {nome("Battezzato/a: Cognome"), nome("D'Aro")},
          {nome("Nascita: Data"), nome("10/10/1813")},
          {nome("Padre: Nome"), nome("Carlo")},
          {nome("Madre: Nome"), nome("Luigia")},
          {nome("Padrino/Madrina 1: Nome"), nome("Pietro")},
          {nome("Testo"), lungo}}},
        {"a new marriage",
         "R2",
         "",
         {{nome("Atto: Codice"), nome("8")},
          {nome("Atto: Data"), nome("11/10/1813")},
          {nome("Sposo: Nome"), nome("Carlo")},
          {nome("Padre dello sposo: Nome"), nome("Ugo")},
          {nome("Sposa: Nome"), nome("Luigia")},
          {nome("Testimone 1: Nome"), nome("Pietro")},
          {nome("Testo"), lungo.left(200)}}},
        {"a changed death",
         "R3",
         "V1",
         {{nome("Defunto/a: Età"), nome("anni 30")},
          {nome("Morte: Luogo"), nome("Parma")},
          {nome("Padre: Nome"), nome("Ugo")},
          {nome("Coniuge: Nome"), nome("Anna")},
          {nome("Testo"), lungo}}},
    };
}

void prepara(const QString &percorso)
{
    creaModello(percorso);
    ApriArchivio(percorso);
    for (const char *riga :
         {"INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Duomo')",
          "INSERT INTO Operatori (Codice, Nome, Tipo) VALUES ('O1', 'Ada', 42)",
          "INSERT INTO Registri (Codice, Archivio, Tipo, Titolo) VALUES ('R1', 'A1', 9, 'B'), "
          "('R2', 'A1', 10, 'M'), ('R3', 'A1', 11, 'S')",
          "INSERT INTO Voci (Codice, Registro, CodiceVoce) VALUES ('V1', 'R3', '1')",
          "INSERT INTO Individui (Codice, Voce, Nome, Sesso, Ruolo) VALUES "
          "('I1', 'V1', 'Pio', 'M', 4)",
          "INSERT INTO Eventi (Codice, IdProprietario, Tipo, Luogo) VALUES "
          "('E1', 'I1', 26, 'Roma')"})
        connessione().Execute({QString::fromUtf8(riga), {}, {}});
    avviaArchivi();
}

// Compie il lavoro in un processo suo, e rende ciò che ha detto; `stato` come è finito.
QByteArray aParte(const std::function<QByteArray()> &lavoro, int &stato)
{
    int tubo[2];
    if (::pipe(tubo) != 0)
        qFatal("manca un tubo");
    const pid_t figlio = ::fork();
    if (figlio == 0) {
        ::alarm(secondiAlPiu);
        ::close(tubo[0]);
        QByteArray detto;
        try {
            detto = lavoro();
        } catch (const std::exception &errore) {
            detto = errore.what();
        }
        const bool tutto =
            ::write(tubo[1], detto.constData(), static_cast<size_t>(detto.size())) == detto.size();
        ::_exit(tutto ? 0 : 3);
    }
    ::close(tubo[1]);
    QByteArray detto;
    char pezzo[4096];
    for (ssize_t letti = 0; (letti = ::read(tubo[0], pezzo, sizeof pezzo)) > 0;)
        detto.append(pezzo, letti);
    ::close(tubo[0]);
    if (::waitpid(figlio, &stato, 0) != figlio)
        stato = -1;
    return detto;
}

// Un processo che apre il file com'è rimasto: l'impronta delle righe, senza le ore; oppure che cosa
// non va.
QByteArray impronta(const QString &percorso)
{
    int stato = 0;
    const QByteArray detta = aParte(
        [&] {
            ado::Connection archivio;
            archivio.Open(stringaDiConnessione(percorso));
            const QString integro =
                archivio.valore({QStringLiteral("PRAGMA integrity_check"), {}, {}}).toString();
            QStringList tutte{integro};
            for (const QString &ora :
                 {QStringLiteral("Individui SET Creazione"),
                  QStringLiteral("Individui SET Modifica"), QStringLiteral("Voci SET Modifica"),
                  QStringLiteral("Famiglie SET Modifica"), QStringLiteral("Eventi SET Modifica")})
                archivio.Execute({QStringLiteral("UPDATE %1 = ''").arg(ora), {}, {}});
            const righe::Copia copia = righe::copia(archivio);
            for (auto tabella = copia.cbegin(); tabella != copia.cend(); ++tabella) {
                for (const QStringList &riga : *tabella)
                    tutte.append(tabella.key() + u' ' + riga.join(u'|'));
            }
            tutte.sort();
            return integro == QStringLiteral("ok")
                       ? QCryptographicHash::hash(tutte.join(u'\n').toUtf8(),
                                                  QCryptographicHash::Sha1)
                             .toHex()
                       : integro.toUtf8();
        },
        stato);
    return stato == 0 ? detta : "stato " + QByteArray::number(stato) + ' ' + detta;
}

QMap<QString, QByteArray> file(const QString &cartella)
{
    QMap<QString, QByteArray> trovati;
    const QDir dove(cartella);
    for (const QString &nome : dove.entryList(QDir::Files | QDir::Hidden)) {
        QFile uno(dove.filePath(nome));
        if (uno.open(QIODevice::ReadOnly))
            trovati.insert(uno.fileName(), uno.readAll());
    }
    return trovati;
}

// I file com'erano, nello stesso posto del disco: chi ha aperto l'archivio non se ne accorge.
void rimette(const QString &cartella, const QMap<QString, QByteArray> &comEra)
{
    for (const QString &nome : file(cartella).keys()) {
        if (!comEra.contains(nome))
            QFile::remove(nome);
    }
    for (auto uno = comEra.cbegin(); uno != comEra.cend(); ++uno) {
        QFile scritto(uno.key());
        if (!scritto.open(QIODevice::ReadWrite) || scritto.write(*uno) != uno->size() ||
            !scritto.resize(uno->size()))
            qFatal("la prova non può preparare i suoi file");
    }
}

void preme(Qt::Key tasto, const QString &testo = {}, Qt::KeyboardModifiers modi = {})
{
    QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), tasto, testo, modi);
}

void batte(const Scena &scena)
{
    constexpr int caselleAlPiu = 80;
    for (const auto &[casella, testo] : scena.caselle) {
        for (int i = 0; QApplication::focusWidget()->accessibleName() != casella; ++i) {
            if (i > caselleAlPiu)
                throw std::runtime_error(("non si arriva a " + casella).toStdString());
            preme(Qt::Key_Tab);
        }
        for (const QChar lettera : testo)
            preme(Qt::Key_unknown, lettera);
        preme(Qt::Key_Escape);
        QApplication::processEvents();
    }
}

// Quali chiamate: dalla prima detta, una ogni tante.
struct Passo {
    int primo = 0;
    int ogni = 1;
};

struct Conto {
    int uccisi = 0;
    int interi = 0;
    int perdite = 0;
};

// Salva con la tastiera in un processo suo, che muore alla chiamata detta; rende quante sono state.
QByteArray salva(const QString &cartella, const QMap<QString, QByteArray> &comEra, int quale,
                 int &stato)
{
    rimette(cartella, comEra);
    return aParte(
        [&] {
            inganni::Piano piano;
            piano.cartella = cartella;
            piano.quale = quale;
            piano.muore = true;
            inganni::arma(piano);
            preme(Qt::Key_Return, QStringLiteral("\r"), Qt::ControlModifier);
            const int passate = inganni::passate();
            inganni::disarma();
            if (quale >= 0) // dopo l'ultima
                ::kill(::getpid(), SIGKILL);
            return QByteArray::number(passate);
        },
        stato);
}

// La pagina è pronta, tutto è scritto: da qui un processo per ciascuna chiamata, che muore lì.
Conto uccide(const Scena &scena, const Passo &passo, const QString &cartella)
{
    Conto conto;
    const auto perduto = [&](const QByteArray &che) {
        QTextStream(stdout) << "LOST: " << scena.nome << ": " << che << '\n';
        ++conto.perdite;
    };
    const QString percorso = archivioIn(cartella);
    const QMap<QString, QByteArray> comEra = file(cartella);
    const QByteArray prima = impronta(percorso);
    int stato = 0;
    const int chiamate = salva(cartella, comEra, -1, stato).toInt();
    const QByteArray dopo = impronta(percorso);
    if (stato != 0 || chiamate == 0 || dopo == prima)
        perduto("it is not saved: " + QByteArray::number(stato));
    QList<int> quali;
    for (int quale = passo.primo % passo.ogni; quale < chiamate; quale += passo.ogni)
        quali.append(quale);
    quali.append(chiamate); // quando ha finito
    for (const int quale : std::as_const(quali)) {
        salva(cartella, comEra, quale, stato);
        if (!WIFSIGNALED(stato) || WTERMSIG(stato) != SIGKILL)
            perduto("not killed at call " + QByteArray::number(quale));
        const QByteArray resta = impronta(percorso);
        if (resta != prima && resta != dopo)
            perduto("call " + QByteArray::number(quale) + ": the act is there in part " + resta);
        ++conto.uccisi;
        conto.interi += resta == dopo ? 1 : 0;
    }
    return conto;
}

// Il processo che apre la pagina e vi scrive; quelli da uccidere nascono da lui.
QByteArray scrive(const Scena &scena, const Passo &passo, const QString &cartella)
{
    const QString percorso = archivioIn(cartella);
    ApriArchivio(percorso);
    ProprietaScheda sue;
    sue.Percorso = percorso;
    sue.RegistroLocale = QString::fromUtf8(scena.registro);
    sue.VoceLocale = QString::fromUtf8(scena.voce);
    sue.ConOperatore = QStringLiteral("O1");
    fmScheda pagina(sue, nullptr);
    pagina.Form_Load();
    pagina.show();
    pagina.activateWindow();
    if (!QTest::qWaitForWindowActive(&pagina))
        throw std::runtime_error("la pagina non diventa attiva");
    pagina.comincia();
    batte(scena);
    ::alarm(0);
    const Conto conto = uccide(scena, passo, cartella);
    QTextStream(stdout) << "page, " << scena.nome << ": killed at " << conto.uccisi
                        << " calls of a save-and-next, there whole " << conto.interi
                        << " times and not at all " << conto.uccisi - conto.interi - conto.perdite
                        << ": lost " << conto.perdite << Qt::endl;
    return QByteArray::number(conto.perdite);
}

} // namespace

int main(int argc, char **argv)
{
    const int giri = argc > 1 ? QByteArray(argv[1]).toInt() : 0;
    if (giri < 1) {
        QTextStream(stderr) << "usage: pagina_uccisa ROUNDS [SEED]\n";
        return 2;
    }
    const Passo passo{argc > 2 ? QByteArray(argv[2]).toInt() : 0, std::max(1, giriPerTutte / giri)};
    const QTemporaryDir cartella;
    int perdite = 0;
    for (const Scena &scena : scene()) {
        const QString sua = cartella.filePath(QString::fromUtf8(scena.registro));
        QDir().mkpath(sua);
        int stato = 0;
        bool numero = false;
        // Anche il file nasce in un processo suo: chi poi lo apre non l'ha mai avuto aperto.
        aParte(
            [&] {
                prepara(archivioIn(sua));
                return QByteArray();
            },
            stato);
        const QByteArray detto = aParte(
            [&] {
                QApplication applicazione(argc, argv);
                preparaApplicazione(applicazione);
                return scrive(scena, passo, sua);
            },
            stato);
        perdite += detto.toInt(&numero);
        if (stato != 0 || !numero) {
            QTextStream(stdout) << "LOST: " << scena.nome << ": " << stato << ' ' << detto << '\n';
            ++perdite;
        }
    }
    return perdite == 0 ? 0 : 1;
}
