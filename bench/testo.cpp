// La pagina di un atto in un archivio grande: quanto ci mette a sapere come il registro scrive, con
// quanta memoria, quanto intanto fa aspettare, e quanto costa un tasto nel testo.
//   testo ARCHIVIO [VOLTE]

#include "app/avvio.h"
#include "atti/fmScheda.h"
#include "atti/formule_scheda.h"
#include "atti/pagina.h"
#include "bench/tavola.h"
#include "db/archivio/connessioni.h"
#include "db/atto/registro_atti.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>

using namespace modTarvola;

namespace
{

struct Misura {
    double pronta = 0; // da quando la pagina si vede, in millisecondi
    double ferma = 0;  // il tempo più lungo in cui intanto non risponde
    QList<double> tasti;
};

// Legge una volta ciò che il registro ha scritto, e batte il testo di un suo atto da capo.
Misura prova(const QString &percorso, const QString &voce)
{
    ProprietaScheda sue;
    sue.Percorso = percorso;
    sue.VoceLocale = voce;
    fmScheda scheda(sue, nullptr);
    scheda.Form_Load();
    scheda.resize(1200, 700);
    scheda.show();
    Misura misura;
    QElapsedTimer orologio;
    orologio.start();
    const auto *formule = scheda.findChild<FormuleScheda *>();
    while (!formule->pronta()) {
        misura.ferma = std::max(misura.ferma, millisecondi([] { QApplication::processEvents(); }));
        QThread::usleep(200);
    }
    misura.pronta = static_cast<double>(orologio.nsecsElapsed()) / 1e6;
    TestoProposto *testo = scheda.pagina()->testo(QStringLiteral("testo"))->testo();
    const QString scritto = testo->toPlainText();
    testo->setFocus();
    testo->clear();
    for (const QChar lettera : scritto) {
        misura.tasti.append(millisecondi([&] {
            QTest::sendKeyEvent(QTest::Click, testo, Qt::Key_unknown, lettera, {});
            QApplication::processEvents();
        }));
    }
    if (testo->toPlainText() != scritto)
        qFatal("il testo battuto non è quello");
    return misura;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    if (argc < 2)
        return 2;
    preparaApplicazione(applicazione);
    const QString percorso = QString::fromLocal8Bit(argv[1]);
    const int volte = argc > 2 ? std::max(1, QByteArray(argv[2]).toInt()) : 5;
    avviaArchivi();
    ApriArchivio(percorso);
    // Un registro diverso ogni volta, com'è per chi apre una pagina.
    QList<Misura> misure;
    double oltre = 0;
    for (int i = 0; i < volte; ++i) {
        azzeraMemoriaMassima();
        const double prima = memoriaMassima();
        const QString voce = ultimoAtto(connessione(), QStringLiteral("R%1").arg(5 + 3 * i, 0, 10));
        misure.append(prova(percorso, voce));
        oltre = std::max(oltre, memoriaMassima() - prima);
    }
    QList<double> tasti;
    std::vector<double> pronte;
    double ferma = 0;
    for (const Misura &una : std::as_const(misure)) {
        tasti += una.tasti;
        pronte.push_back(una.pronta);
        ferma = std::max(ferma, una.ferma);
    }
    std::sort(tasti.begin(), tasti.end());
    const auto novantanove = static_cast<qsizetype>(static_cast<double>(tasti.size()) * 0.99);
    Tavola tavola(volte);
    tavola.assoluto("formule del registro pronte, ms", 300, mediana(pronte));
    tavola.assoluto("intanto la pagina non risponde al più, ms", 0, ferma);
    tavola.assoluto("memoria della pagina con le formule, MiB", 40, oltre);
    tavola.assoluto("un tasto nel testo, 99° percentile, ms", 16,
                    tasti.value(std::min(novantanove, tasti.size() - 1)));
    return tavola.bastata() ? 0 : 1;
}
