// Quanti tasti costa una serie d'atti scritta sulla pagina della finestra vera, coi soli tasti, in
// un archivio nuovo; e se ciò che vi resta è ciò che la serie dice.
//   fatica SERIE.json           scrive le caselle e il testo
//   fatica --testo SERIE.json   dall'undicesimo incolla il testo, e conta le caselle che se ne
//   leggono

#include "app/avvio.h"
#include "app/MDITras.h"
#include "bench/righe_atti.h"
#include "bench/serie.h"
#include "bench/trascrittore.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/schema/modello.h"

#include <QApplication>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

using namespace modTarvola;

namespace
{

constexpr int primoContato = 11;

void dice(const QString &riga)
{
    std::printf("%s\n", qUtf8Printable(riga));
    std::fflush(stdout);
}

// Un archivio con un registro solo, del tipo della serie.
void creaArchivio(const QString &percorso, int tipo)
{
    creaModello(percorso);
    ado::Connection connessione;
    connessione.Open(stringaDiConnessione(percorso));
    connessione.Execute(
        {QStringLiteral("INSERT INTO Archivi (Codice, Nome) VALUES ('A1', 'Parrocchia')"), {}, {}});
    connessione.Execute({QStringLiteral("INSERT INTO Registri (Codice, Archivio, Tipo, Titolo) "
                                        "VALUES ('R1', 'A1', ?, 'Registro')"),
                         {tipo},
                         {}});
}

// Una domanda a cui i tasti della serie non rispondono ferma tutto: si dice quale.
void sorveglia()
{
    auto *orologio = new QTimer(qApp);
    QObject::connect(orologio, &QTimer::timeout, qApp, [] {
        const QWidget *sopra = QApplication::activeModalWidget();
        if (sopra == nullptr)
            return;
        dice(QStringLiteral("La finestra domanda: ") + sopra->windowTitle());
        const auto scritte = sopra->findChildren<QLabel *>();
        for (const QLabel *una : scritte)
            dice(una->text());
        std::_Exit(1);
    });
    orologio->start(200);
}

int confronta(const serie::Serie &serie, const QList<QStringList> &scritti)
{
    int diverse = 0;
    for (qsizetype i = 0; i < std::max(serie.atti.size(), scritti.size()); ++i) {
        const QStringList attese = serie.atti.value(i).righe;
        const QStringList righe = scritti.value(i);
        for (const QString &una : attese) {
            if (attese.count(una) != righe.count(una) && ++diverse > 0)
                dice(QStringLiteral("atto %1 manca: %2").arg(i + 1).arg(una));
        }
        for (const QString &una : righe) {
            if (!attese.contains(una) && ++diverse > 0)
                dice(QStringLiteral("atto %1 di troppo: %2").arg(i + 1).arg(una));
        }
    }
    return diverse;
}

QString media(int somma, qsizetype atti)
{
    return QString::number(static_cast<double>(somma) / static_cast<double>(atti), 'f', 1);
}

QString parte(int quante, int di)
{
    return QString::number(di == 0 ? 0 : static_cast<double>(quante) / di, 'f', 3);
}

// Quanto costa una lettera del testo, quante volte ciò che si propone è giusto, e quanto fa
// aspettare un tasto.
void diceDelTesto(int tasti, int lettere, int mostrate, int giuste, QList<double> tempi)
{
    std::sort(tempi.begin(), tempi.end());
    const auto posto = static_cast<qsizetype>(static_cast<double>(tempi.size()) * 0.99);
    dice(QStringLiteral("testo: lettere %1 tasti %2 tasti per lettera %3; tratti mostrati %4 "
                        "giusti %5; un tasto al 99° percentile %6 ms")
             .arg(lettere)
             .arg(tasti)
             .arg(parte(tasti, lettere))
             .arg(mostrate)
             .arg(parte(giuste, mostrate))
             .arg(tempi.isEmpty() ? 0.0 : tempi.at(std::min(posto, tempi.size() - 1)), 0, 'f', 1));
}

// Le caselle con i loro tasti, le più care davanti.
void diceDelleCaselle(const QMap<QString, int> &caselle, qsizetype quanti)
{
    QList<QPair<int, QString>> care;
    for (const auto &[nome, tasti] : caselle.toStdMap())
        care.append({tasti, nome});
    std::sort(care.rbegin(), care.rend());
    for (const auto &[tasti, nome] : std::as_const(care))
        dice(QStringLiteral("%1  %2").arg(media(tasti, quanti), 6).arg(nome));
}

void riassume(const QList<Trascrittore::Conto> &conti, const serie::Serie &serie)
{
    std::array<int, Trascrittore::Specie_quante> somme{};
    QMap<QString, int> caselle;
    int totale = 0;
    int lettere = 0;
    int mostrate = 0;
    int giuste = 0;
    QList<double> tempi;
    const qsizetype primo = std::min<qsizetype>(primoContato, conti.size()) - 1;
    const qsizetype quanti = conti.size() - primo;
    for (qsizetype i = primo; i < conti.size(); ++i) {
        for (size_t s = 0; s < somme.size(); ++s)
            somme.at(s) += conti.at(i).tasti.at(s);
        for (const auto &[nome, tasti] : conti.at(i).caselle.toStdMap())
            caselle[nome] += tasti;
        totale += conti.at(i).totale();
        lettere += static_cast<int>(serie.atti.at(i).testo.size());
        mostrate += conti.at(i).mostrate;
        giuste += conti.at(i).giuste;
        tempi += conti.at(i).tempi;
    }
    diceDelleCaselle(caselle, quanti);
    dice(QStringLiteral("battuti %1, presi %2, Tab e frecce %3, comandi %4, testo %5")
             .arg(media(somme[Trascrittore::Battuti], quanti),
                  media(somme[Trascrittore::Presi], quanti),
                  media(somme[Trascrittore::Passi], quanti),
                  media(somme[Trascrittore::Comandi], quanti),
                  media(somme[Trascrittore::Testo], quanti)));
    const int testo = somme[Trascrittore::Testo];
    diceDelTesto(testo, lettere, mostrate, giuste, tempi);
    dice(QStringLiteral("tasti per atto: caselle %1 testo %2 totale %3 (atti %4-%5, testo %6 "
                        "lettere)")
             .arg(media(totale - testo, quanti), media(testo, quanti), media(totale, quanti))
             .arg(primo + 1)
             .arg(conti.size())
             .arg(media(lettere, quanti)));
}

void somma(Trascrittore::Letto &lette, const Trascrittore::Letto &altre)
{
    lette.giuste += altre.giuste;
    lette.sbagliate += altre.sbagliate;
    lette.vuote += altre.vuote;
    lette.quali += altre.quali;
}

// Le caselle che il testo dà, sul totale di quelle dell'atto che la pagina non propone da sé.
void riassume(const Trascrittore::Letto &lette)
{
    QMap<QString, int> casi;
    for (const QString &una : lette.quali)
        ++casi[una.section(u':', 0, 1)];
    for (const auto &[nome, quante] : casi.toStdMap())
        dice(QStringLiteral("%1 non lette o sbagliate: %2").arg(quante, 4).arg(nome));
    const int tutte = lette.giuste + lette.sbagliate + lette.vuote;
    dice(QStringLiteral("caselle dal testo: %1 giuste %2 sbagliate %3 vuote %4")
             .arg(tutte)
             .arg(parte(lette.giuste, tutte), parte(lette.sbagliate, tutte),
                  parte(lette.vuote, tutte)));
}

// Apre la pagina di un atto nuovo dall'elenco dei registri.
QWidget *aprePagina(MDITras &principale, const QString &percorso)
{
    ApriArchivio(percorso);
    contesto().PercorsoCorrente = percorso;
    ProprietaTabella registri;
    registri.TipoTabella = QStringLiteral("Registri");
    registri.Percorso = percorso;
    registri.Ordinamento = 7;
    fmTabella *elenco = principale.apre(registri);
    QApplication::processEvents();
    const auto comandi = elenco->findChildren<QAction *>();
    for (QAction *uno : comandi) {
        if (uno->text().remove(u'&').startsWith(QStringLiteral("Trascrivi"))) {
            uno->trigger();
            break;
        }
    }
    QApplication::processEvents();
    return principale.findChild<QWidget *>(QStringLiteral("fmScheda"));
}

// Scrive tutta la serie in un archivio nuovo e la confronta; rende lo stato del programma.
int scrive(const serie::Serie &serie, const QString &percorso, bool dalTesto)
{
    creaArchivio(percorso, serie.tipo);
    sorveglia();
    MDITras principale;
    principale.resize(1280, 800);
    principale.show();
    principale.activateWindow();
    QWidget *pagina = aprePagina(principale, percorso);
    if (pagina == nullptr || !QTest::qWaitForWindowActive(&principale)) {
        dice(QStringLiteral("La pagina non si apre"));
        return 1;
    }
    Trascrittore trascrittore(pagina);
    QList<Trascrittore::Conto> conti;
    QString motivo;
    Trascrittore::Letto lette;
    for (const serie::Atto &atto : serie.atti) {
        if (dalTesto && conti.size() + 1 >= primoContato)
            somma(lette, trascrittore.leggeDalTesto(atto).value_or(Trascrittore::Letto{}));
        if (!trascrittore.trascrive(atto, motivo)) {
            dice(QStringLiteral("atto %1: %2").arg(conti.size() + 1).arg(motivo));
            return 1;
        }
        conti.append(trascrittore.conto());
    }
    const int diverse = confronta(serie, righeDegliAtti(connessione()));
    for (const QString &casella : trascrittore.mancate())
        dice(QStringLiteral("nessuna casella per ") + casella);
    if (diverse > 0)
        dice(QStringLiteral("righe diverse: %1").arg(diverse));
    riassume(conti, serie);
    if (dalTesto)
        riassume(lette);
    return diverse > 0 ? 1 : 0;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    const bool dalTesto = argc > 2 && QByteArray(argv[1]) == "--testo";
    if (argc < 2) {
        std::fprintf(stderr, "uso: fatica [--testo] SERIE.json\n");
        return 2;
    }
    const char *file = argv[argc - 1];
    QString motivo;
    const auto serie = serie::legge(QString::fromLocal8Bit(file), motivo);
    if (!serie) {
        std::fprintf(stderr, "%s: %s\n", file, qUtf8Printable(motivo));
        return 2;
    }
    const QTemporaryDir cartella;
    preparaApplicazione(applicazione);
    try {
        return scrive(*serie, cartella.filePath(QStringLiteral("fatica.tvd")), dalTesto);
    } catch (const ado::Errore &errore) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(errore.testo()));
        return 1;
    }
}
