#include "db/storia/ritorno.h"

#include "db/schema/tabelle.h"
#include "db/storia/contenuti.h"
#include "db/storia/registrazione.h"

#include <QHash>

#include <algorithm>

namespace modTarvola::storia
{

namespace
{

using ado::Mutamento;
using catalogo::Forma;

QString detto(const QString &tabella, const QStringList &chiave)
{
    const catalogo::Tabella *sua = catalogo::cerca(tabella);
    return sua != nullptr && sua->forma == Forma::Record
               ? chiave.join(u' ')
               : QStringLiteral("%1 (%2)").arg(chiave.join(QStringLiteral(" e ")), tabella);
}

const catalogo::Tabella *conCodice(const QString &tabella)
{
    const catalogo::Tabella *sua = catalogo::cerca(tabella);
    return sua != nullptr && sua->forma == Forma::Record ? sua : nullptr;
}

class Ritorno
{
public:
    Ritorno(ado::Connection &connessione, qint64 numero, Scrittura scrittura)
        : m_connessione(connessione), m_numero(numero), m_scrittura(std::move(scrittura))
    {
    }

    void compie(const QByteArray &pezzo, ado::Insieme::Verso verso);
    // Chi vive ancora dentro ciò che il ritorno toglie lo impedisce.
    void verificaDipendenti() const;
    const QList<Effetto> &effetti() const { return m_effetti; }
    const Scrittura &scrittura() const { return m_scrittura; }
    const Chiavi &tolte() const { return m_tolte; }

private:
    void verificaTabella(const Mutamento &uno);
    void prepara(const Mutamento &uno);

    ado::Connection &m_connessione;
    qint64 m_numero;
    Scrittura m_scrittura;
    QList<Effetto> m_effetti;
    Chiavi m_tolte;
    QHash<QString, int> m_colonne;
};

// Una tabella che manca il motore la salterebbe in silenzio.
void Ritorno::verificaTabella(const Mutamento &uno)
{
    if (!m_colonne.contains(uno.tabella()))
        m_colonne.insert(
            uno.tabella(),
            static_cast<int>(
                m_connessione
                    .colonne({QStringLiteral("SELECT * FROM \"%1\"").arg(uno.tabella()), {}, {}})
                    .size()));
    if (m_colonne.value(uno.tabella()) != uno.colonne())
        throw ado::Errore(
            ado::Causa::Altro,
            QStringLiteral("la tabella %1 non è più quella di allora").arg(uno.tabella()));
}

void Ritorno::prepara(const Mutamento &uno)
{
    verificaTabella(uno);
    const QStringList chiave = uno.chiave();
    m_effetti.append({uno.tabella(), chiave, uno.specie()});
    const catalogo::Tabella *sua = conCodice(uno.tabella());
    if (sua == nullptr || uno.specie() != Mutamento::Tolto)
        return;
    m_tolte.annota(m_connessione, uno.tabella(), QStringLiteral("Codice = ?"), {chiave.first()});
    const auto *lunga = sua->lunga();
    if (lunga != nullptr && uno.nullo(static_cast<int>(lunga - sua->colonne.data())))
        accantona(m_connessione, m_numero, chiave.first());
}

void Ritorno::compie(const QByteArray &pezzo, ado::Insieme::Verso verso)
{
    const ado::Insieme insieme(pezzo, verso);
    const qsizetype primo = m_effetti.size();
    insieme.percorre([this](const Mutamento &uno) { prepara(uno); });
    QString tabella;
    QStringList chiave;
    if (!insieme.compie(m_connessione, [&](const Mutamento &uno) {
            tabella = uno.tabella();
            chiave = uno.chiave();
        }))
        throw Impedimento(tabella, chiave);
    QHash<QString, QStringList> tornati;
    for (qsizetype i = primo; i < m_effetti.size(); ++i) {
        const Effetto &uno = m_effetti.at(i);
        if (uno.specie == Mutamento::Nuovo && conCodice(uno.tabella) != nullptr)
            tornati[uno.tabella].append(uno.chiave.first());
    }
    m_scrittura.chiavi.rimette(m_connessione, tornati);
    for (auto suoi = tornati.cbegin(); suoi != tornati.cend(); ++suoi) {
        if (catalogo::tabella(suoi.key()).lunga() == nullptr)
            continue;
        for (const QString &codice : suoi.value())
            restituisce(m_connessione, m_numero, codice);
    }
}

void Ritorno::verificaDipendenti() const
{
    for (const Effetto &uno : m_effetti) {
        const catalogo::Tabella *sua = conCodice(uno.tabella);
        if (sua == nullptr || uno.specie != Mutamento::Tolto)
            continue;
        for (const catalogo::Posto &posto : catalogo::dipendentiDi(sua->nome)) {
            if (posto.colonna->legame == catalogo::Legame::Nominato)
                continue;
            const QString tabella = posto.tabella->nome.toString();
            m_connessione.leggi({QStringLiteral("SELECT * FROM %1 WHERE %2 = ? LIMIT 1")
                                     .arg(tabella, catalogo::citata(posto.colonna->nome)),
                                 {uno.chiave.first()},
                                 {}},
                                [&](const ado::Riga &riga) -> bool {
                                    QStringList chiave;
                                    const auto quante = posto.tabella->chiave().size();
                                    for (int i = 0; i < static_cast<int>(quante); ++i)
                                        chiave.append(riga.testo(i));
                                    throw Impedimento(tabella, chiave);
                                });
        }
    }
}

} // namespace

Impedimento::Impedimento(const QString &tabella, const QStringList &chiave)
    : Errore(
          ado::Causa::Altro,
          QStringLiteral("il record %1 non è più come il passo lo aveva lasciato: qualcuno lo ha "
                         "cambiato dopo. Tutto resta com'è")
              .arg(detto(tabella, chiave)))
{
}

QList<Effetto> riprende(ado::Connection &connessione, qint64 numero, ado::Insieme::Verso verso)
{
    const bool annulla = verso == ado::Insieme::Indietro;
    ado::Transazione transazione(connessione);
    const QVariant scritti = connessione.valore(
        {QStringLiteral("SELECT Cambiamenti FROM Storia WHERE Numero = ? AND Verso = ?"),
         {numero, annulla ? 0 : 1},
         {}});
    if (!scritti.isValid())
        throw ado::Errore(ado::Causa::Altro, QStringLiteral("il passo non c'è più"));
    Scrittura scrittura = Scrittura::da(scritti.toByteArray());
    QList<QByteArray> pezzi = scrittura.pezzi;
    if (annulla)
        std::reverse(pezzi.begin(), pezzi.end());
    Ritorno ritorno(connessione, numero, scrittura);
    for (const QByteArray &pezzo : std::as_const(pezzi))
        ritorno.compie(pezzo, verso);
    if (annulla)
        ritorno.verificaDipendenti();
    // Chi tornerà nell'altro verso rimetterà al loro posto le righe tolte ora.
    scrittura.chiavi = ritorno.tolte();
    connessione.Execute({QStringLiteral("UPDATE Storia SET Verso = ?, Cambiamenti = ? WHERE "
                                        "Numero = ?"),
                         {annulla ? 1 : 0, scrittura.byte(), numero},
                         {}});
    transazione.conferma();
    return ritorno.effetti();
}

} // namespace modTarvola::storia
