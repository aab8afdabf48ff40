#include "atti/formule_scheda.h"

#include "atti/pagina.h"

#include <QAction>

using namespace modTarvola;

namespace
{

const QString campoTesto = QStringLiteral("Campolungo");
const QString postoDelTesto = QStringLiteral("testo");

QString testoDi(const scheda::SchedaAtto &atto)
{
    return atto.valore({postoDelTesto, 0, 0, campoTesto}).toString();
}

} // namespace

FormuleScheda::FormuleScheda(Pagina *pagina, const QString &percorso, const QString &registro)
    : QObject(pagina), m_pagina(pagina), m_testo(pagina->testo(postoDelTesto))
{
    if (m_testo == nullptr)
        return;
    m_registro = new FormuleRegistro(percorso, registro, {}, this);
    TestoProposto *testo = m_testo->testo();
    testo->continua([this](const QString &prima) {
        return pronta() ? m_registro->formulario()->seguito(caselle(), prima) : formule::Seguito{};
    });
    connect(m_registro, &FormuleRegistro::letto, testo, &TestoProposto::fonteLetta);
}

void FormuleScheda::mostra(const scheda::SchedaAtto &atto)
{
    m_atto = atto;
    m_daLeggere = true;
    if (m_testo != nullptr)
        m_testo->testo()->taccia(false);
}

void FormuleScheda::impara(const scheda::SchedaAtto &atto)
{
    const QString testo = testoDi(atto);
    const bool noto = m_atto && !m_atto->atto().codice.isEmpty() && testoDi(*m_atto) == testo;
    m_atto = atto;
    m_daLeggere = true;
    if (m_registro == nullptr || noto || testo.trimmed().isEmpty())
        return;
    m_registro->impara(formule::caselleDi(atto), testo);
}

// Le caselle come stanno sulla pagina, le proposte comprese: si leggono quando servono.
const formule::Caselle &FormuleScheda::caselle()
{
    if (std::exchange(m_daLeggere, false) && m_atto) {
        scheda::SchedaAtto qui = *m_atto;
        m_pagina->raccoglie(qui);
        m_caselle = formule::caselleDi(qui);
    }
    return m_caselle;
}

QMap<scheda::Indirizzo, formule::Lettura> FormuleScheda::leggeCaselle(const QString &testo) const
{
    if (!pronta())
        return {};
    formule::Caselle scritte;
    for (const RigaPagina *riga : m_pagina->righe()) {
        for (const Campo *campo : riga->campi()) {
            if (!campo->proposto() && !campo->vuoto())
                scritte.insert(campo->dove, campo->valore().toString());
        }
    }
    return m_registro->formulario()->caselle(testo, scritte);
}

QList<QAction *> FormuleScheda::comandi() const
{
    return m_testo == nullptr ? QList<QAction *>() : m_testo->testo()->comandi();
}
