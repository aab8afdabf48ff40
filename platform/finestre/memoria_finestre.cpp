#include "platform/finestre/memoria_finestre.h"

#include <QEvent>
#include <QHeaderView>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

namespace memoria
{

namespace
{

constexpr int colonnaMinima = 16;
constexpr int colonnaMassima = 4000;

std::unique_ptr<QSettings> &file()
{
    static std::unique_ptr<QSettings> solo;
    return solo;
}

// Scrive le misure della finestra quando si nasconde, comunque la si chiuda.
class AllaChiusura : public QObject
{
public:
    AllaChiusura(QWidget *finestra, QString chiave) : QObject(finestra), m_chiave(std::move(chiave))
    {
        finestra->installEventFilter(this);
    }

    bool eventFilter(QObject *oggetto, QEvent *evento) override
    {
        auto *finestra = qobject_cast<QWidget *>(oggetto);
        if (evento->type() == QEvent::Show && !evento->spontaneous()) {
            m_misure = finestra->size();
            m_stato = finestra->windowState();
        }
        // Solo una finestra attiva ha il posto che le hanno dato il gestore e il programma.
        if (evento->type() == QEvent::WindowActivate && !m_posto)
            QTimer::singleShot(0, this, [this, finestra] { m_posto = finestra->pos(); });
        if (evento->type() == QEvent::Hide && !evento->spontaneous() && cambiata(finestra))
            ricorda(m_chiave, finestra->saveGeometry());
        return false;
    }

private:
    // Una finestra che l'utente non ha toccato tiene le misure sue, che seguono il carattere.
    bool cambiata(const QWidget *finestra) const
    {
        return finestra->size() != m_misure ||
               (finestra->windowState() & Qt::WindowMaximized) != (m_stato & Qt::WindowMaximized) ||
               (m_posto && *m_posto != finestra->pos());
    }

    QString m_chiave;
    QSize m_misure;
    Qt::WindowStates m_stato;
    std::optional<QPoint> m_posto;
};

QString larghezze(const QHeaderView *colonne)
{
    QStringList tutte;
    for (int i = 0; i < colonne->count(); ++i)
        tutte.append(QString::number(colonne->sectionSize(i)));
    return tutte.join(u' ');
}

// Proprietà della testata: le larghezze sono dell'utente; le sta cambiando il programma.
constexpr const char *dellUtente = "larghezzeDellUtente";
constexpr const char *inAdattamento = "larghezzeInAdattamento";

void rendeLarghezze(QHeaderView *colonne, const QString &testo)
{
    const QStringList tutte = testo.split(u' ', Qt::SkipEmptyParts);
    if (tutte.isEmpty() || tutte.size() != colonne->count())
        return;
    colonne->setProperty(dellUtente, true);
    for (int i = 0; i < colonne->count(); ++i) {
        const int larga = tutte.at(i).toInt();
        if (larga >= colonnaMinima && larga <= colonnaMassima)
            colonne->resizeSection(i, larga);
    }
}

} // namespace

void usaFile(const QString &percorso)
{
    file() =
        percorso.isEmpty() ? nullptr : std::make_unique<QSettings>(percorso, QSettings::IniFormat);
}

QString fileDellUtente()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
           QStringLiteral("/finestre.ini");
}

QVariant valore(const QString &chiave)
{
    return file() == nullptr ? QVariant() : file()->value(chiave);
}

void ricorda(const QString &chiave, const QVariant &valore)
{
    if (file() != nullptr)
        file()->setValue(chiave, valore);
}

void dimentica(const QString &chiave)
{
    if (file() != nullptr)
        file()->remove(chiave);
}

void ricordaFinestra(QWidget *finestra, const QString &nome)
{
    const QString chiave = QStringLiteral("finestre/") + nome;
    finestra->restoreGeometry(valore(chiave).toByteArray());
    if (!finestra->isMaximized())
        finestra->resize(finestra->size().boundedTo(finestra->screen()->availableSize()));
    new AllaChiusura(finestra, chiave);
}

void ricordaColonne(QHeaderView *colonne, const QString &nome)
{
    const QString chiave = QStringLiteral("colonne/%1-%2").arg(nome).arg(colonne->count());
    rendeLarghezze(colonne, valore(chiave).toString());
    QObject::connect(colonne, &QHeaderView::sectionResized, colonne, [colonne, chiave] {
        if (colonne->property(inAdattamento).toBool())
            return;
        colonne->setProperty(dellUtente, true);
        ricorda(chiave, larghezze(colonne));
    });
}

void adattaColonne(QHeaderView *colonne, const std::function<int(int)> &larghezza)
{
    if (colonne->property(dellUtente).toBool())
        return;
    colonne->setProperty(inAdattamento, true);
    for (int i = 0; i < colonne->count(); ++i)
        colonne->resizeSection(i, larghezza(i));
    colonne->setProperty(inAdattamento, false);
}

} // namespace memoria
