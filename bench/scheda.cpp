// Misura la pagina di un atto in un archivio grande, nella finestra vera: quanto ci mette ad
// aprirsi, a proporre mentre si scrive, a salvare, e quanta memoria tiene.
//   scheda ARCHIVIO [VOLTE]

#include "app/avvio.h"
#include "app/MDITras.h"
#include "atti/fmScheda.h"
#include "atti/pagina.h"
#include "atti/repertorio.h"
#include "bench/pavimento.h"
#include "bench/tavola.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/schema/generi.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QMdiArea>
#include <QPlainTextEdit>
#include <QTableView>
#include <QTest>

#include <algorithm>

using namespace modTarvola;

namespace
{

constexpr int meta50 = 50;
constexpr int meta16 = 16;

QAction *comando(const QObject *dove, const QString &inizio)
{
    const auto tutti = dove->findChildren<QAction *>();
    const auto suo = std::find_if(tutti.begin(), tutti.end(), [&inizio](const QAction *uno) {
        return uno->text().remove(u'&').startsWith(inizio);
    });
    if (suo == tutti.end())
        qFatal("manca il comando %s", qUtf8Printable(inizio));
    return *suo;
}

fmTabella *apreElenco(MDITras &principale, const QString &percorso, const QString &tabella,
                      const QString &registro = {})
{
    ProprietaTabella proprieta;
    proprieta.TipoTabella = tabella;
    proprieta.Percorso = percorso;
    proprieta.RegistroLocale = registro;
    proprieta.ArchivioLocale =
        connessione()
            .valore(
                {QStringLiteral("SELECT Archivio FROM Registri WHERE Codice = ?"), {registro}, {}})
            .toString();
    proprieta.Ordinamento = registro.isEmpty() ? 7 : 4;
    fmTabella *elenco = principale.apre(proprieta);
    constexpr int millesimi = 10000;
    if (!QTest::qWaitFor([elenco] { return !elenco->vuota(); }, millesimi))
        qFatal("l'elenco è vuoto: %s", qUtf8Printable(tabella + u' ' + registro));
    return elenco;
}

// Gli atti di un registro di battesimi a metà dell'archivio.
fmTabella *apreAtti(MDITras &principale, const QString &percorso)
{
    const QString registro =
        connessione()
            .valore({QStringLiteral("SELECT Codice FROM Registri WHERE Tipo = ? ORDER BY "
                                    "abs(rowid - (SELECT max(rowid) / 2 FROM Registri)) LIMIT 1"),
                     {RegistroBattesimi},
                     {}})
            .toString();
    return apreElenco(principale, percorso, QStringLiteral("Voci"), registro);
}

fmScheda *apre(const fmTabella *elenco, MDITras &principale, const QString &nome)
{
    comando(elenco, nome)->trigger();
    QApplication::processEvents();
    auto *scheda = principale.findChild<fmScheda *>();
    if (scheda == nullptr)
        qFatal("la pagina non si apre");
    return scheda;
}

// Finché le proposte vengono da tutto l'archivio.
void aspetta(const Repertorio &repertorio)
{
    constexpr int millesimi = 240000;
    if (!QTest::qWaitFor([&] { return repertorio.compiuto(); }, millesimi))
        qFatal("l'archivio non si finisce di leggere");
}

void chiude(fmScheda *scheda)
{
    delete scheda->parentWidget();
    QApplication::processEvents();
}

// Batte una lettera e aspetta che la pagina l'abbia disegnata con le sue proposte.
double batte(QChar lettera)
{
    return millisecondi([lettera] {
        QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, lettera,
                            {});
        QApplication::processEvents();
    });
}

// In ogni casella di testo che propone qualcosa, più inizi di parola, ciascuno da capo.
std::vector<double> battute(const fmScheda *scheda)
{
    std::vector<double> tempi;
    const std::vector<Campo *> campi = scheda->pagina()->campi();
    for (const QString &inizio : {QStringLiteral("mar"), QStringLiteral("gio"), QStringLiteral("a"),
                                  QStringLiteral("d'an"), QStringLiteral("san")}) {
        for (Campo *campo : campi) {
            auto *riga = qobject_cast<QLineEdit *>(campo->fuoco());
            if (riga == nullptr || riga->maxLength() <= 1)
                continue;
            riga->setFocus();
            riga->clear();
            for (const QChar lettera : inizio)
                tempi.push_back(batte(lettera));
            riga->clear();
        }
    }
    return tempi;
}

double centile99(std::vector<double> tempi)
{
    std::sort(tempi.begin(), tempi.end());
    constexpr size_t cento = 100;
    return tempi.at((tempi.size() - 1) * (cento - 1) / cento);
}

void misuraApertura(Tavola &misura, MDITras &principale, const fmTabella *atti)
{
    const auto apertura = [&](const char *nome) {
        fmScheda *scheda = nullptr;
        const double tempo =
            millisecondi([&] { scheda = apre(atti, principale, QString::fromUtf8(nome)); });
        chiude(scheda);
        return tempo;
    };
    misura.assoluto("pagina di un atto nuovo, ms", meta50,
                    [&] { return apertura("Nuova scheda"); });
    misura.assoluto("pagina di un atto che c'è, ms", meta50, [&] { return apertura("Scheda"); });
}

void misuraTasti(Tavola &misura, MDITras &principale, const fmTabella *atti)
{
    fmScheda *scheda = apre(atti, principale, QStringLiteral("Nuova scheda"));
    misura.assoluto("tasti appena aperta, 99 su 100, ms", meta16,
                    [&] { return centile99(battute(scheda)); });
    aspetta(*scheda->repertorio());
    misura.assoluto("tasti con tutto l'archivio, 99 su 100, ms", meta16,
                    [&] { return centile99(battute(scheda)); });
    chiude(scheda);
}

// Un battesimo di cinque persone col suo testo.
void scrive(fmScheda *scheda, int quale)
{
    Pagina *pagina = scheda->pagina();
    const QString numero = QString::number(quale);
    const std::pair<scheda::Indirizzo, QString> valori[] = {
        {{QStringLiteral("voce"), 0, 0, QStringLiteral("CodiceVoce")}, numero},
        {{QStringLiteral("voce"), 0, 0, QStringLiteral("Data")}, QStringLiteral("1813-10-11")},
        {{QStringLiteral("battezzato"), 0, 0, QStringLiteral("Nome")}, QStringLiteral("Giosuè")},
        {{QStringLiteral("battezzato"), 0, 0, QStringLiteral("Cognome")}, QStringLiteral("D'Aro")},
        {{QStringLiteral("battezzato"), 0, 0, QStringLiteral("Sesso")}, QStringLiteral("M")},
        {{QStringLiteral("battezzato"), 0, 20, QStringLiteral("Data")},
         QStringLiteral("1813-10-10")},
        {{QStringLiteral("battezzato"), 0, 20, QStringLiteral("Luogo")}, QStringLiteral("Roncole")},
        {{QStringLiteral("padre"), 0, 0, QStringLiteral("Nome")}, QStringLiteral("Carlo") + numero},
        {{QStringLiteral("madre"), 0, 0, QStringLiteral("Nome")}, QStringLiteral("Luigia")},
        {{QStringLiteral("madre"), 0, 0, QStringLiteral("Cognome")}, QStringLiteral("Uttini")},
        {{QStringLiteral("padrini"), 0, 0, QStringLiteral("Nome")}, QStringLiteral("Pietro")},
        {{QStringLiteral("padrini"), 1, 0, QStringLiteral("Nome")}, QStringLiteral("Barbara")}};
    for (const auto &[dove, valore] : valori)
        pagina->campo(dove)->scrive(valore);
    QTest::keyClicks(
        pagina->testo(QStringLiteral("testo"))->testo(),
        QStringLiteral("L'anno 1813, il giorno 11 di ottobre fu battezzato ").repeated(5));
}

struct Righe {
    QString istruzione;
    QVariantList valori;
};

// Le righe che un atto ha nel file, come il motore da solo le scriverebbe.
std::vector<Righe> righeDi(const QString &voce)
{
    const QString persone = QStringLiteral("(SELECT Codice FROM Individui WHERE Voce = ?1)");
    const QString famiglie = QStringLiteral("(SELECT Codice FROM Famiglie WHERE Voce = ?1)");
    const std::pair<const char *, QString> tabelle[] = {
        {"Voci", QStringLiteral("Codice = ?1")},
        {"Individui", QStringLiteral("Voce = ?1")},
        {"Famiglie", QStringLiteral("Voce = ?1")},
        {"FamiglieConiugi", QStringLiteral("CodiceFamiglia IN ") + famiglie},
        {"FamiglieGenitori", QStringLiteral("CodiceFamiglia IN ") + famiglie},
        {"Eventi", QStringLiteral("IdProprietario IN ") + persone},
        {"Binari", QStringLiteral("IdProprietario = ?1")}};
    std::vector<Righe> tutte;
    for (const auto &[nome, dove] : tabelle) {
        const QString tabella = QString::fromLatin1(nome);
        connessione().leggi(
            {QStringLiteral("SELECT * FROM %1 WHERE %2").arg(tabella, dove), {voce}, {}},
            [&](const ado::Riga &riga) {
                Righe una;
                QStringList posti;
                for (int i = 0; i < riga.colonne(); ++i) {
                    una.valori.append(riga.valore(i));
                    posti.append(QStringLiteral("?"));
                }
                una.istruzione =
                    QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(tabella, posti.join(u','));
                tutte.push_back(una);
                return true;
            });
    }
    return tutte;
}

// Una copia del file, al posto di quella che c'era.
QString copiaDi(const QString &percorso, const QString &estensione)
{
    const QString copia = percorso + estensione;
    QFile::remove(copia);
    if (!QFile::copy(percorso, copia))
        qFatal("la copia non riesce");
    return copia;
}

// Il salvataggio della pagina in una copia dell'archivio, e le stesse righe in un'altra.
void misuraSalvataggio(Tavola &misura, MDITras &principale, const QString &percorso)
{
    const QString nostra = copiaDi(percorso, QStringLiteral(".copia"));
    const QString sua = copiaDi(percorso, QStringLiteral(".pavimento"));
    ado::Connection pavimento;
    pavimento.Open(stringaDiConnessione(sua));
    ApriArchivio(nostra);
    contesto().PercorsoCorrente = nostra;
    const fmTabella *atti = apreAtti(principale, nostra);
    fmScheda *scheda = apre(atti, principale, QStringLiteral("Nuova scheda"));
    aspetta(*scheda->repertorio());
    int quale = 0;
    constexpr int serie = 4;
    double suo = 0;
    misura.rapporto(
        "salvare un atto, ms", 1.5, [&] { return suo; },
        [&] {
            scrive(scheda, ++quale);
            suo = millisecondi([&] {
                if (!scheda->salva())
                    qFatal("l'atto non si salva");
            });
            const std::vector<Righe> righe = righeDi(scheda->proprieta.VoceLocale);
            scheda->nuovo();
            QApplication::processEvents();
            return millisecondi([&] {
                ado::Transazione transazione(pavimento);
                for (const Righe &una : righe)
                    pavimento.Execute({una.istruzione, una.valori, {}});
                transazione.conferma();
            });
        },
        serie);
    chiude(scheda);
    pavimento.Close();
    connessione().Close();
    QFile::remove(nostra);
    QFile::remove(sua);
}

// Ciò che le proposte tengono, e ciò che tengono mentre leggono, sopra un elenco con tutte le
// chiavi.
void misuraMemoria(Tavola &misura, MDITras &principale, const fmTabella *atti)
{
    constexpr double meta20 = 20;
    azzeraMemoriaMassima();
    const double prima = memoriaMassima();
    fmScheda *scheda = apre(atti, principale, QStringLiteral("Nuova scheda"));
    const double lettura = millisecondi([&] { aspetta(*scheda->repertorio()); });
    battute(scheda);
    misura.assoluto("memoria della pagina sopra l'elenco, MiB", meta20, memoriaMassima() - prima);
    constexpr double mebi = 1024 * 1024;
    misura.assoluto("di cui proposte di tutto l'archivio, MiB", 0,
                    static_cast<double>(scheda->repertorio()->byte()) / mebi);
    misura.assoluto("leggere tutto l'archivio per proporlo, ms", 0, lettura);
    chiude(scheda);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    if (argc < 2)
        return 2;
    const QString percorso = QString::fromLocal8Bit(argv[1]);
    const int volte = argc > 2 ? qBound(1, QString::fromLocal8Bit(argv[2]).toInt(), 6) : 5;
    preparaApplicazione(applicazione);
    MDITras principale;
    principale.resize(1280, 800);
    principale.show();
    ApriArchivio(percorso);
    contesto().PercorsoCorrente = percorso;
    const fmTabella *individui = apreElenco(principale, percorso, QStringLiteral("Individui"));
    const fmTabella *atti = apreAtti(principale, percorso);
    const auto *griglia = individui->findChild<QTableView *>(QStringLiteral("DataGrid1"));
    for (int prima = -1; prima != griglia->model()->rowCount();) {
        prima = griglia->model()->rowCount();
        QTest::qWait(meta50);
    }
    Tavola misura(volte);
    misura.intesta();
    misuraMemoria(misura, principale, atti);
    misuraApertura(misura, principale, atti);
    misuraTasti(misura, principale, atti);
    misuraSalvataggio(misura, principale, percorso);
    return misura.bastata() ? 0 : 1;
}
