#include "contesto/comandi.h"

#include "platform/finestre/memoria_finestre.h"
#include "platform/finestre/tasti.h"

#include <QAbstractButton>
#include <QAction>
#include <QKeyEvent>
#include <QShortcut>

#include <algorithm>

namespace comandi
{

namespace
{

QString chiave(const QString &id)
{
    return QStringLiteral("tasti/") + id;
}

// Nelle impostazioni chi non ha tasto ha un testo vuoto; chi ha il primo non c'è.
bool siLegge(const QString &testo, const QKeySequence &tasto, unsigned dove)
{
    return testo.isEmpty() || impedimento(tasto, dove).isEmpty();
}

Tasti &correnti()
{
    static Tasti quelli = Tasti::ricordati();
    return quelli;
}

void veste(QAction *azione, const QString &id, Porta porta)
{
    if (porta == Porta::NomeETasto)
        azione->setShortcut(inVigore().di(id));
    azione->setToolTip(tasti::conTasto(azione->text(), inVigore().di(id)));
}

} // namespace

const Comando &comando(const QString &id)
{
    const auto trovato = std::find_if(catalogo().begin(), catalogo().end(),
                                      [&](const Comando &uno) { return uno.id == id; });
    Q_ASSERT(trovato != catalogo().end());
    return *trovato;
}

Tasti::Tasti()
{
    for (const Comando &uno : catalogo())
        m_tasti.insert(uno.id, uno.primo);
}

const Comando *Tasti::conflitto(const QString &id, const QKeySequence &tasto) const
{
    if (tasto.isEmpty())
        return nullptr;
    const unsigned dove = comando(id).dove;
    const auto altro = std::find_if(catalogo().begin(), catalogo().end(), [&](const Comando &uno) {
        return uno.id != id && (uno.dove & dove) != 0 && di(uno.id) == tasto;
    });
    return altro == catalogo().end() ? nullptr : &*altro;
}

Tasti Tasti::ricordati()
{
    Tasti letti;
    QStringList scelti;
    for (const Comando &uno : catalogo()) {
        const QVariant valore = memoria::valore(chiave(uno.id));
        const QString testo = valore.toString();
        const auto tasto = QKeySequence::fromString(testo, QKeySequence::PortableText);
        if (!valore.isValid() || !siLegge(testo, tasto, uno.dove))
            continue;
        letti.da(uno.id, tasto);
        const Comando *altro = letti.conflitto(uno.id, tasto);
        if (altro != nullptr && scelti.contains(altro->id))
            letti.da(uno.id, uno.primo);
        else
            scelti.append(uno.id);
    }
    for (const Comando &uno : catalogo()) {
        if (!scelti.contains(uno.id) && letti.conflitto(uno.id, letti.di(uno.id)) != nullptr)
            letti.da(uno.id, {});
    }
    return letti;
}

void Tasti::ricorda() const
{
    for (const Comando &uno : catalogo()) {
        if (di(uno.id) == uno.primo)
            memoria::dimentica(chiave(uno.id));
        else
            memoria::ricorda(chiave(uno.id), di(uno.id).toString(QKeySequence::PortableText));
    }
}

const Tasti &inVigore()
{
    return correnti();
}

void cambia(const Tasti &nuovi)
{
    nuovi.ricorda();
    correnti() = nuovi;
    emit segnali().cambiati();
}

void riprende()
{
    correnti() = Tasti::ricordati();
    emit segnali().cambiati();
}

bool corrisponde(const QKeyEvent &evento, const QString &id)
{
    // Il tastierino e gli altri tasti valgono uguale.
    const QKeyCombination premuto(evento.modifiers() & ~Qt::KeypadModifier, Qt::Key(evento.key()));
    const QKeySequence tasto = inVigore().di(id);
    return !tasto.isEmpty() && tasto == QKeySequence(premuto);
}

QString suggerimento(const QString &id)
{
    return tasti::conTasto(comando(id).piano(), inVigore().di(id));
}

void lega(QAction *azione, const QString &id, Porta porta)
{
    if (azione->text().isEmpty())
        azione->setText(comando(id).nome);
    veste(azione, id, porta);
    // Anche quando cambia il suo testo.
    QObject::connect(azione, &QAction::changed, azione, [=] { veste(azione, id, porta); });
    QObject::connect(&segnali(), &Segnali::cambiati, azione, [=] { veste(azione, id, porta); });
}

void lega(QAbstractButton *bottone, QWidget *dove, const QString &id)
{
    auto *scorciatoia = new QShortcut(dove);
    scorciatoia->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(scorciatoia, &QShortcut::activated, bottone, [bottone] { bottone->click(); });
    const auto veste = [=] {
        scorciatoia->setKey(inVigore().di(id));
        bottone->setToolTip(tasti::conTasto(bottone->text(), inVigore().di(id)));
    };
    veste();
    QObject::connect(&segnali(), &Segnali::cambiati, bottone, veste);
}

Segnali &segnali()
{
    static Segnali soli;
    return soli;
}

} // namespace comandi
