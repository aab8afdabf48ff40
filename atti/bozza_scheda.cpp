#include "atti/fmScheda.h"
#include "atti/pagina.h"
#include "contesto/bozze.h"
#include "platform/finestre/discordia.h"
#include "platform/motore/recordset.h"

#include <QLabel>

// La bozza di ciò che nella pagina è scritto e non ancora registrato.

using namespace modTarvola;
using scheda::Come;

namespace
{

const QString chiaveRegistro = QStringLiteral("registro");
const QString chiaveVoce = QStringLiteral("voce");
const QChar separatore = u'\t';

// L'indirizzo di una casella, come sta in una bozza.
QString inTesto(const scheda::Indirizzo &dove)
{
    return QStringList{dove.posto, QString::number(dove.quale), QString::number(dove.evento),
                       dove.campo}
        .join(separatore);
}

std::optional<scheda::Indirizzo> daTesto(const QString &testo)
{
    const QStringList parti = testo.split(separatore);
    if (parti.size() != 4)
        return {};
    return scheda::Indirizzo{parti.at(0), parti.at(1).toInt(), parti.at(2).toInt(), parti.at(3)};
}

} // namespace

void fmScheda::abbozza()
{
    if (proprieta.TipoLock == ado::adLockReadOnly)
        return;
    m_sorgente = new bozze::Sorgente(this, proprieta.Percorso, bozze::Sorgente::Posto::Sola,
                                     [this] { return bozza(); });
    connect(m_pagina, &Pagina::cambiata, m_sorgente, &bozze::Sorgente::cambiata);
    // Chi passa ad altro, o registra, non lascia una bozza dietro di sé.
    connect(this, &fmScheda::passata, m_sorgente, &bozze::Sorgente::registrata);
}

bozze::Finestra fmScheda::bozza() const
{
    bozze::Finestra mia{
        objectName(),
        m_titolo->text(),
        {{chiaveRegistro, proprieta.RegistroLocale}, {chiaveVoce, proprieta.VoceLocale}},
        proprieta.VoceLocale,
        {},
        {}};
    for (const Campo *campo : m_pagina->campi()) {
        if (campo->scritto())
            mia.caselle.append({inTesto(campo->dove), campo->nome(), campo->casella()->scritta(),
                                campo->nelRecord().toString()});
    }
    for (const scheda::Posto &posto : m_scheda->posti) {
        const TestoPagina *testo = m_pagina->testo(posto.nome);
        if (posto.come == Come::Testo && testo != nullptr && testo->scritto())
            mia.caselle.append(
                {posto.nome, posto.etichetta, testo->valore(), testoNelFile(posto.nome)});
    }
    return mia;
}

QString fmScheda::testoNelFile(const QString &posto) const
{
    return scheda::SchedaAtto(*m_scheda, m_prima)
        .valore({posto, 0, 0, QStringLiteral("Campolungo")})
        .toString();
}

void fmScheda::riprende(const bozze::Finestra &mia)
{
    QList<discordia::Casella> cambiate;
    const auto confronta = [&cambiate](const bozze::Scritta &una, const QString &nelFile) {
        if (nelFile != una.prima && nelFile != una.testo)
            cambiate.append({una.etichetta, una.testo, nelFile});
    };
    for (const bozze::Scritta &una : mia.caselle) {
        const auto dove = daTesto(una.nome);
        if (Campo *campo = dove ? m_pagina->campo(*dove) : nullptr) {
            confronta(una, campo->nelRecord().toString());
            campo->casella()->rimette(una.testo);
        } else if (TestoPagina *testo = m_pagina->testo(una.nome)) {
            confronta(una, testoNelFile(una.nome));
            testo->testo()->setPlainText(una.testo);
        }
    }
    m_ripresa = true;
    aggiornaTesta();
    const discordia::Parole parole{
        tr("L'atto è cambiato"),
        tr("Dopo che questa bozza è stata scritta l'atto è cambiato. Nulla è ancora registrato."),
        tr("Nella bozza"), tr("&Tieni la bozza"), tr("&Prendi ciò che è nel file")};
    if (!cambiate.isEmpty() && discordia::chiede(this, parole, cambiate) == discordia::Prende)
        mostra(m_prima);
}
