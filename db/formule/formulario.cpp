#include "db/formule/formulario.h"

#include <QList>

namespace modTarvola::formule
{

struct Formulario::Dentro {
    QList<QPair<Caselle, QString>> atti;
};

Formulario::Formulario() : m_dentro(std::make_unique<Dentro>()) {}
Formulario::~Formulario() = default;
Formulario::Formulario(Formulario &&) noexcept = default;
Formulario &Formulario::operator=(Formulario &&) noexcept = default;

void Formulario::impara(const Caselle &caselle, const QString &testo, bool nelRegistro)
{
    Q_UNUSED(nelRegistro)
    if (!testo.trimmed().isEmpty())
        m_dentro->atti.append({caselle, testo});
}

// La parola che comincia il testo, con gli spazi davanti.
static qsizetype primaParola(const QString &testo)
{
    qsizetype i = 0;
    while (i < testo.size() && testo.at(i).isSpace())
        ++i;
    while (i < testo.size() && !testo.at(i).isSpace())
        ++i;
    return i;
}

Seguito Formulario::seguito(const Caselle &caselle, const QString &prima) const
{
    Q_UNUSED(caselle)
    // Il più vicino dei testi in cui sta ciò che precede il cursore.
    const QString coda = prima.right(12);
    for (qsizetype k = m_dentro->atti.size() - 1; k >= 0; --k) {
        const QString &testo = m_dentro->atti.at(k).second;
        const qsizetype dove = coda.isEmpty() ? 0 : testo.indexOf(coda);
        if (dove < 0 || dove + coda.size() >= testo.size())
            continue;
        const QString resto = testo.mid(dove + coda.size());
        const qsizetype pausa = resto.indexOf(u',', 1);
        return {resto, primaParola(resto), pausa < 0 ? resto.size() : pausa};
    }
    return {};
}

QMap<scheda::Indirizzo, Lettura> Formulario::caselle(const QString &testo,
                                                     const Caselle &note) const
{
    Q_UNUSED(testo)
    Q_UNUSED(note)
    return {};
}

} // namespace modTarvola::formule
