#include "platform/memoria_finestre.h"

#include <QEvent>
#include <QHeaderView>
#include <QSettings>
#include <QStandardPaths>
#include <QWidget>

#include <memory>

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
    AllaChiusura(QWidget *finestra, QString chiave)
        : QObject(finestra), m_chiave(std::move(chiave))
    {
        finestra->installEventFilter(this);
    }

    bool eventFilter(QObject *oggetto, QEvent *evento) override
    {
        auto *finestra = qobject_cast<QWidget *>(oggetto);
        const bool mostrata = evento->type() == QEvent::Show && !evento->spontaneous();
        if (mostrata)
            m_mostrata = finestra->saveGeometry();
        const bool chiusa = evento->type() == QEvent::Hide && !evento->spontaneous();
        // Una finestra che l'utente non ha toccato tiene le misure sue, che seguono il carattere.
        if (chiusa && finestra->saveGeometry() != m_mostrata)
            ricorda(m_chiave, finestra->saveGeometry());
        return false;
    }

private:
    QString m_chiave;
    QByteArray m_mostrata;
};

QString larghezze(const QHeaderView *colonne)
{
    QStringList tutte;
    for (int i = 0; i < colonne->count(); ++i)
        tutte.append(QString::number(colonne->sectionSize(i)));
    return tutte.join(u' ');
}

void rendeLarghezze(QHeaderView *colonne, const QString &testo)
{
    const QStringList tutte = testo.split(u' ', Qt::SkipEmptyParts);
    if (tutte.size() != colonne->count())
        return;
    for (int i = 0; i < colonne->count(); ++i) {
        const int larga = tutte.at(i).toInt();
        if (larga >= colonnaMinima && larga <= colonnaMassima)
            colonne->resizeSection(i, larga);
    }
}

} // namespace

void usaFile(const QString &percorso)
{
    file() = percorso.isEmpty() ? nullptr
                                : std::make_unique<QSettings>(percorso, QSettings::IniFormat);
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

void ricordaFinestra(QWidget *finestra, const QString &nome)
{
    const QString chiave = QStringLiteral("finestre/") + nome;
    finestra->restoreGeometry(valore(chiave).toByteArray());
    new AllaChiusura(finestra, chiave);
}

void ricordaColonne(QHeaderView *colonne, const QString &nome)
{
    const QString chiave = QStringLiteral("colonne/%1-%2").arg(nome).arg(colonne->count());
    rendeLarghezze(colonne, valore(chiave).toString());
    QObject::connect(colonne, &QHeaderView::sectionResized, colonne,
                     [colonne, chiave] { ricorda(chiave, larghezze(colonne)); });
}

} // namespace memoria
