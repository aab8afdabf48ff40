// Un file grande aggiunto a un archivio e riscritto fuori, dalle finestre vere: quanto tempo,
// quanta memoria oltre a quella che il programma ha già, e se i byte tornano.
//   allegato CARTELLA [MEGABYTE]

#include "app/avvio.h"
#include "app/MDITras.h"
#include "bench/tavola.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/schema/generi.h"
#include "db/schema/modello.h"
#include "texts/allegati.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QtEndian>
#include <QTimer>

using namespace modTarvola;

namespace
{

constexpr qint64 mega = qint64{1} << 20;

// Chi apre i file al posto del desktop: nessuno.
class Nessuno : public QObject
{
    Q_OBJECT

public:
    Nessuno() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "apre"); }
    ~Nessuno() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    Nessuno(const Nessuno &) = delete;
    Nessuno &operator=(const Nessuno &) = delete;

public slots:
    void apre(const QUrl & /*indirizzo*/) {}
};

void scriveGrande(const QString &percorso, int megabyte)
{
    QFile file(percorso);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("il file da allegare non si può scrivere");
    QRandomGenerator caso(11);
    QByteArray pezzo(mega, '\0');
    for (int i = 0; i < megabyte; ++i) {
        for (qsizetype posto = 0; posto < pezzo.size(); posto += 4)
            qToLittleEndian(caso.generate(), pezzo.data() + posto);
        if (file.write(pezzo) != pezzo.size())
            qFatal("il file da allegare non si può scrivere");
    }
}

QByteArray impronta(const QString &percorso)
{
    QFile file(percorso);
    QCryptographicHash conto(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !conto.addData(&file))
        qFatal("il file %s non si può leggere", qPrintable(percorso));
    return conto.result();
}

// Nella finestra che chiede il file ne batte il nome.
void sceglie(const QString &percorso)
{
    QTimer::singleShot(20, qApp, [percorso] {
        auto *dialogo = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (dialogo == nullptr)
            return sceglie(percorso);
        dialogo->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(percorso);
        static_cast<QDialog *>(dialogo)->accept();
    });
}

void misura(MDITras &principale, const QString &cartella, int megabyte, Tavola &tavola)
{
    const QString file = cartella + QStringLiteral("/scansione.tif");
    const QString fuori = cartellaDeiFile();
    QDir(fuori).removeRecursively();
    scriveGrande(file, megabyte);
    QApplication::processEvents();
    const double sua = memoriaMassima();
    const double entra = millisecondi([&] {
        sceglie(file);
        if (!NuovoAllegato(&principale, QStringLiteral("V1"), FileAllegato))
            qFatal("il file non è entrato");
    });
    const double esce = millisecondi([&] { ApriAllegato(&principale, QStringLiteral("B1")); });
    const double oltre = memoriaMassima() - sua;
    if (impronta(file) != impronta(fuori + QStringLiteral("scansione.tif")))
        qFatal("i byte non sono quelli");
    tavola.assoluto("allegare il file, s", 0, entra / 1000);
    tavola.assoluto("riscriverlo fuori, s", 0, esce / 1000);
    tavola.assoluto("memoria oltre a quella del programma, MiB", 64, oltre);
    QFile::remove(file);
    QDir(fuori).removeRecursively();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication applicazione(argc, argv);
    const QString cartella =
        argc > 1 ? QDir(QString::fromLocal8Bit(argv[1])).absolutePath() : QString();
    const int megabyte = argc > 2 ? QByteArray(argv[2]).toInt() : 300;
    if (!QDir(cartella).exists() || cartella.isEmpty() || megabyte < 1) {
        QTextStream(stderr) << "usage: allegato FOLDER [MEGABYTES]\n";
        return 2;
    }
    preparaApplicazione(applicazione);
    const Nessuno nessuno;
    const QString archivio = cartella + QStringLiteral("/allegati.tvd");
    QFile::remove(archivio);
    creaModello(archivio);
    // La finestra principale, nascendo, comincia da nessun archivio aperto.
    MDITras principale;
    principale.show();
    ApriArchivio(archivio);
    connessione().Execute({QStringLiteral("INSERT INTO Voci (Codice) VALUES ('V1')"), {}, {}});
    Tavola tavola(1);
    misura(principale, cartella, megabyte, tavola);
    connessione().Close();
    QFile::remove(archivio);
    return tavola.bastata() ? 0 : 1;
}

#include "allegato.moc"
