#include "texts/formule_registro.h"

#include <QTimer>

#include <utility>

using namespace modTarvola;
using formule::Formulario;

FormuleRegistro::FormuleRegistro(const QString &percorso, const QString &registro,
                                 const QString &atto, QObject *sopra)
    : QObject(sopra)
{
    const auto nuovo = std::make_shared<Formulario>();
    m_lettura = std::make_unique<LetturaAParte>(
        percorso,
        [nuovo, registro, atto](ado::Connection &sua, const LetturaAParte::Prosegue &prosegue) {
            *nuovo = formule::legge(sua, registro, prosegue, atto);
        },
        [this, nuovo](const QString &guasto) {
            m_pronto = guasto.isEmpty();
            m_formulario = std::move(*nuovo);
            emit letto(guasto);
        });
}

void FormuleRegistro::impara(const formule::Caselle &caselle, const QString &testo)
{
    m_inAttesa.append({caselle, testo});
    // Provare l'atto su ciò che si sapeva costa qualche millesimo: non mentre si aspetta che sia
    // registrato.
    QTimer::singleShot(0, this, &FormuleRegistro::imparaIlNuovo);
}

void FormuleRegistro::imparaIlNuovo()
{
    if (!m_lettura->finita())
        return;
    for (const auto &[caselle, testo] : std::exchange(m_inAttesa, {}))
        m_formulario.impara(caselle, testo);
}

const Formulario *FormuleRegistro::formulario()
{
    if (!m_pronto)
        return nullptr;
    imparaIlNuovo();
    return &m_formulario;
}
