#include "platform/finestre/dialoghi.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>

namespace dialoghi
{

namespace
{

QString mostra(QFileDialog &dialogo, const SceltaFile &scelta)
{
    // Quello del toolkit: in italiano dappertutto, e raggiungibile dai lettori di schermo.
    dialogo.setOption(QFileDialog::DontUseNativeDialog);
    dialogo.setWindowTitle(scelta.titolo);
    if (scelta.entrando) {
        scelta.entrando(scelta.cartella);
        QObject::connect(&dialogo, &QFileDialog::directoryEntered, &dialogo, scelta.entrando);
    }
    dialogo.setDirectory(scelta.cartella);
    dialogo.setViewMode(QFileDialog::Detail);
    dialogo.resize(dialogo.fontMetrics().averageCharWidth() * 120,
                   dialogo.fontMetrics().height() * 32);
    if (auto *colonne = dialogo.findChild<QHeaderView *>()) {
        colonne->setSectionResizeMode(QHeaderView::ResizeToContents);
        // Il catalogo italiano del toolkit non traduce il tipo delle cartelle.
        constexpr int colonnaTipo = 2;
        colonne->hideSection(colonnaTipo);
    }
    // Per il toolkit "*.*" vuole un punto nel nome: si mostra com'è scritto, ma vale ogni file.
    if (scelta.filtro.endsWith(QStringLiteral("(*.*)"))) {
        dialogo.setOption(QFileDialog::HideNameFilterDetails);
        dialogo.setNameFilter(scelta.filtro + QStringLiteral(" (*)"));
    } else if (!scelta.filtro.isEmpty()) {
        dialogo.setNameFilter(scelta.filtro);
    }
    if (dialogo.exec() != QDialog::Accepted || dialogo.selectedFiles().isEmpty())
        return {};
    return dialogo.selectedFiles().constFirst();
}

} // namespace

QString apriFile(QWidget *sopra, const SceltaFile &scelta)
{
    QFileDialog dialogo(sopra);
    dialogo.setAcceptMode(QFileDialog::AcceptOpen);
    dialogo.setFileMode(QFileDialog::ExistingFile);
    // Le parti della finestra del toolkit nascono con lei.
    dialogo.setOption(QFileDialog::DontUseNativeDialog);
    // Il nome di un file si può battere senza estensione, se non ce n'è uno che si chiama proprio
    // così.
    if (auto *nome = dialogo.findChild<QLineEdit *>(QStringLiteral("fileNameEdit")))
        QObject::connect(nome, &QLineEdit::textChanged, &dialogo, [&](const QString &battuto) {
            dialogo.setDefaultSuffix(
                QFileInfo(dialogo.directory(), battuto).exists() ? QString() : scelta.estensione);
        });
    const QString percorso = mostra(dialogo, scelta);
    return QFileInfo(percorso).isFile() ? percorso : QString();
}

QString salvaFile(QWidget *sopra, const SceltaFile &scelta)
{
    QFileDialog dialogo(sopra);
    dialogo.setAcceptMode(QFileDialog::AcceptSave);
    dialogo.setFileMode(QFileDialog::AnyFile);
    dialogo.setOption(QFileDialog::DontConfirmOverwrite);
    const QString percorso = mostra(dialogo, scelta);
    const QString coda = u'.' + scelta.estensione;
    if (percorso.isEmpty() || scelta.estensione.isEmpty() ||
        percorso.endsWith(coda, Qt::CaseInsensitive))
        return percorso;
    return percorso + coda;
}

QString scegliCartella(QWidget *sopra, const QString &titolo, const QString &cartella)
{
    QFileDialog dialogo(sopra);
    dialogo.setFileMode(QFileDialog::Directory);
    dialogo.setOption(QFileDialog::ShowDirsOnly);
    return mostra(dialogo, {titolo, cartella, {}, {}, {}});
}

} // namespace dialoghi
