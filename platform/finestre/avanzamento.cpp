#include "platform/finestre/avanzamento.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressDialog>
#include <QScopeGuard>
#include <QWindow>

namespace avanzamento
{

namespace
{

constexpr int parti = 1000;
constexpr int momento = 500;   // millisecondi prima di mostrarsi
constexpr int intervallo = 40; // millisecondi fra due aggiornamenti

// Lascia che la finestra sia sullo schermo prima che il lavoro cominci.
void mostraSubito(QProgressDialog &finestra)
{
    finestra.show();
    QElapsedTimer attesa;
    attesa.start();
    while (!finestra.windowHandle()->isExposed() && attesa.elapsed() < momento)
        QApplication::processEvents(QEventLoop::AllEvents, intervallo);
    QApplication::processEvents();
}

} // namespace

bool compie(QWidget *sopra, const QString &titolo, const std::function<void(const Passo &)> &lavoro,
            Compare quando)
{
    QProgressDialog finestra({}, QStringLiteral("Annulla"), 0, parti,
                             sopra != nullptr ? sopra->window() : nullptr);
    finestra.setObjectName(QStringLiteral("Avanzamento"));
    finestra.setWindowTitle(QApplication::applicationDisplayName());
    auto *etichetta = new QLabel(&finestra);
    etichetta->setTextFormat(Qt::PlainText);
    etichetta->setAlignment(Qt::AlignCenter);
    etichetta->setText(titolo);
    finestra.setLabel(etichetta);
    finestra.setWindowModality(Qt::ApplicationModal);
    finestra.setMinimumDuration(quando == Compare::Subito ? 0 : momento);
    finestra.setAutoClose(false);
    finestra.setAutoReset(false);
    // Chi si è messo sopra di lei, come il manuale, deve sapere che se ne va.
    const auto finita = qScopeGuard([&finestra] { finestra.done(QDialog::Accepted); });
    finestra.setValue(0);
    if (quando == Compare::Subito)
        mostraSubito(finestra);
    QElapsedTimer dallUltimo;
    dallUltimo.start();
    lavoro([&](qint64 fatto, qint64 totale) {
        // Annullata, un valore nuovo la farebbe ricomparire.
        if (!finestra.wasCanceled() && dallUltimo.elapsed() >= intervallo && totale > 0) {
            finestra.setValue(static_cast<int>(fatto * parti / totale));
            dallUltimo.restart();
        }
        return !finestra.wasCanceled();
    });
    return !finestra.wasCanceled();
}

} // namespace avanzamento
