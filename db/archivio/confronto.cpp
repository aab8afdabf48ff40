#include "db/archivio/confronto.h"

#include "platform/motore/flusso.h"

namespace modTarvola
{

namespace
{

constexpr int righePerPasso = 64;

// La riga con una data chiave; al posto del campo lungo, la sua chiave interna.
ado::Comando ricercaDi(const Corrispondenza &come)
{
    QStringList cercate;
    for (qsizetype i = 0; i < come.colonne().size(); ++i)
        cercate.append(i == come.postoLungo() ? QStringLiteral("rowid")
                                              : u'"' + come.colonne().at(i) + u'"');
    QStringList condizioni;
    for (const qsizetype posto : come.chiave())
        condizioni.append(come.colonne().at(posto) + QStringLiteral(" = ?"));
    return {QStringLiteral("SELECT %1 FROM %2 WHERE %3")
                .arg(cercate.join(u','), come.tabella(), condizioni.join(QStringLiteral(" AND "))),
            QVariantList(come.chiave().size()),
            {}};
}

} // namespace

Confronto::Confronto(ado::Connection &archivio, jet::Pagine &fonte, qint64 massimo,
                     std::function<void(const Lettura &)> avanza)
    : m_archivio(archivio), m_fonte(fonte), m_massimo(massimo), m_avanza(std::move(avanza))
{
}

void Confronto::tabella(const Corrispondenza &come, const std::vector<quint32> &rifiutate,
                        qint64 lette)
{
    m_ricerca = ricercaDi(come);
    Lettura lettura(m_fonte, come.fonte());
    auto rifiutata = rifiutate.begin();
    bool uguali = true;
    while (uguali && lettura.righe.prossima()) {
        const RigaLetta attesa = come.legge(lettura, m_massimo);
        // Le rifiutate sono nell'ordine della prima lettura, che questa ripete.
        if (rifiutata != rifiutate.end() && *rifiutata == lettura.righe.lette())
            ++rifiutata;
        else
            uguali = riga(come, lettura, attesa);
        if (lettura.righe.lette() % righePerPasso == 0)
            m_avanza(lettura);
    }
    // Che ogni riga dell'originale ci sia non basta: la copia non deve averne altre.
    const QVariant presenti =
        m_archivio.valore({QStringLiteral("SELECT count(*) FROM ") + come.tabella(), {}, {}});
    if (!uguali || lettura.righe.lette() != lette ||
        presenti.toLongLong() != lette - static_cast<qint64>(rifiutate.size()))
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("nella tabella %1 la copia non corrisponde all'originale")
                              .arg(come.tabella()));
}

bool Confronto::riga(const Corrispondenza &come, Lettura &lettura, const RigaLetta &attesa)
{
    for (qsizetype i = 0; i < come.chiave().size(); ++i)
        m_ricerca.valori[i] = attesa.valori.at(come.chiave().at(i));
    bool uguale = false;
    qint64 chiave = 0;
    m_archivio.leggi(m_ricerca, [&](const ado::Riga &trovata) {
        uguale = true;
        for (int i = 0; i < trovata.colonne(); ++i) {
            if (i == come.postoLungo())
                chiave = trovata.intero(i);
            else if (trovata.valore(i) != attesa.valori.at(i))
                uguale = false;
        }
        return false;
    });
    return uguale && (come.postoLungo() < 0 || lungo(come, lettura, attesa, chiave));
}

bool Confronto::lungo(const Corrispondenza &come, Lettura &lettura, const RigaLetta &attesa,
                      qint64 chiave)
{
    const QString campo = come.colonne().at(come.postoLungo());
    if (attesa.lungo.specie != ContenutoLungo::Byte) {
        const QVariant presente = m_archivio.valore(
            {QStringLiteral("SELECT %1 FROM %2 WHERE rowid = ?").arg(campo, come.tabella()),
             {chiave},
             {}});
        return presente == attesa.valori.at(come.postoLungo());
    }
    // A pezzi si leggono anche i testi: con gli stessi byte passerebbero per un contenuto.
    const QVariant specie = m_archivio.valore(
        {QStringLiteral("SELECT typeof(%1) FROM %2 WHERE rowid = ?").arg(campo, come.tabella()),
         {chiave},
         {}});
    if (specie.toString() != QStringLiteral("blob"))
        return false;
    ado::Stream copia(m_archivio, come.tabella(), campo, chiave, ado::Stream::Lettura);
    bool uguale = copia.Size() == attesa.lungo.lunghezza;
    come.porta(lettura, [&](const QByteArray &pezzo) {
        uguale = uguale && copia.Read(pezzo.size()) == pezzo;
        m_avanza(lettura);
        return uguale;
    });
    return uguale;
}

} // namespace modTarvola
