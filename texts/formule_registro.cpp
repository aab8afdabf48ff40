#include "texts/formule_registro.h"

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
            for (const auto &[caselle, testo] : std::as_const(m_inAttesa))
                m_formulario.impara(caselle, testo);
            m_inAttesa.clear();
            emit letto(guasto);
        });
}

void FormuleRegistro::impara(const formule::Caselle &caselle, const QString &testo)
{
    if (m_lettura->finita())
        m_formulario.impara(caselle, testo);
    else
        m_inAttesa.append({caselle, testo});
}
