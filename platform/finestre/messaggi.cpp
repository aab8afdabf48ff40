#include "platform/finestre/messaggi.h"

#include "platform/errore.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

namespace messaggi
{

namespace
{

int mostra(QWidget *sopra, const QString &testo, QMessageBox::Icon icona,
           QMessageBox::StandardButtons bottoni, QMessageBox::StandardButton predefinito,
           QMessageBox::StandardButton uscita)
{
    QMessageBox scatola(icona, QApplication::applicationDisplayName(), testo, bottoni,
                        sopra != nullptr ? sopra->window() : nullptr);
    scatola.setTextFormat(Qt::PlainText);
    scatola.setDefaultButton(predefinito);
    scatola.setEscapeButton(uscita);
    return scatola.exec();
}

// Quante funzioni protette sono cominciate e non finite: una può aprirne un'altra.
int cominciate = 0;

class Comincia
{
public:
    Comincia() { ++cominciate; }
    ~Comincia() { --cominciate; }
    Comincia(const Comincia &) = delete;
    Comincia &operator=(const Comincia &) = delete;
};

} // namespace

void avvisa(QWidget *sopra, const QString &testo)
{
    mostra(sopra, testo, QMessageBox::NoIcon, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok);
}

bool chiede(QWidget *sopra, const QString &testo, Domanda domanda)
{
    const auto icona = domanda == Domanda::ColSegno ? QMessageBox::Question : QMessageBox::NoIcon;
    const auto proposto = domanda == Domanda::PropostoNo ? QMessageBox::No : QMessageBox::Yes;
    return mostra(sopra, testo, icona, QMessageBox::Yes | QMessageBox::No, proposto,
                  QMessageBox::No) == QMessageBox::Yes;
}

bool avverte(QWidget *sopra, const QString &testo)
{
    return mostra(sopra, testo, QMessageBox::Critical, QMessageBox::Retry | QMessageBox::Cancel,
                  QMessageBox::Cancel, QMessageBox::Cancel) == QMessageBox::Retry;
}

Scelta salva(QWidget *sopra, const QString &testo)
{
    switch (mostra(sopra, testo, QMessageBox::Question,
                   QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                   QMessageBox::Save, QMessageBox::Cancel)) {
    case QMessageBox::Save:
        return Salva;
    case QMessageBox::Discard:
        return Abbandona;
    default:
        return Annulla;
    }
}

int sceglie(QWidget *sopra, const QString &testo, const QStringList &risposte)
{
    QMessageBox scatola(QMessageBox::Warning, QApplication::applicationDisplayName(), testo,
                        QMessageBox::Cancel, sopra != nullptr ? sopra->window() : nullptr);
    scatola.setTextFormat(Qt::PlainText);
    QList<QAbstractButton *> bottoni;
    for (const QString &risposta : risposte)
        bottoni.append(scatola.addButton(risposta, QMessageBox::ActionRole));
    scatola.setDefaultButton(QMessageBox::Cancel);
    scatola.setEscapeButton(QMessageBox::Cancel);
    scatola.exec();
    return static_cast<int>(bottoni.indexOf(scatola.clickedButton()));
}

void riferisceErrore(QWidget *sopra, const QString &motivo)
{
    avvisa(sopra, QStringLiteral("Operazione non riuscita:\n") + motivo);
}

bool protetto(QWidget *sopra, const std::function<void()> &funzione)
{
    const Comincia funzioneInCorso;
    QString motivo;
    try {
        funzione();
        return true;
    } catch (const ado::Errore &errore) {
        motivo = errore.testo();
    } catch (const std::exception &errore) {
        motivo = QString::fromUtf8(errore.what());
    }
    riferisceErrore(sopra, motivo);
    return false;
}

bool inCorso()
{
    return cominciate > 0;
}

} // namespace messaggi
