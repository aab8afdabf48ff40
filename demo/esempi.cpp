#include "demo/esempi.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace esempi
{

namespace
{

[[noreturn]] void rifiuta(const QString &motivo)
{
    throw std::runtime_error(("atti.json: " + motivo).toStdString());
}

// Un oggetto da cui si tolgono le chiavi lette: alla fine non deve restarne nessuna, perché un
// nome sbagliato non passi per un dato che manca.
class Lettore
{
public:
    explicit Lettore(const QJsonValue &valore) : m_oggetto(valore.toObject()) {}

    QString testo(const QString &chiave)
    {
        const QJsonValue valore = m_oggetto.take(chiave);
        if (!valore.isString() && !valore.isUndefined())
            rifiuta(chiave + u" is not a text"_s);
        return valore.toString();
    }
    QString obbligo(const QString &chiave)
    {
        const QString letto = testo(chiave);
        if (letto.isEmpty())
            rifiuta(chiave + u" is missing"_s);
        return letto;
    }
    template <class T>
    std::vector<T> elenco(const QString &chiave, T (*uno)(const QJsonValue &))
    {
        std::vector<T> letti;
        const QJsonValue elenco = m_oggetto.take(chiave);
        if (!elenco.isArray() && !elenco.isUndefined())
            rifiuta(chiave + u" is not a list"_s);
        const QJsonArray valori = elenco.toArray();
        for (const auto &valore : valori)
            letti.push_back(uno(valore));
        return letti;
    }
    void finisce() const
    {
        if (!m_oggetto.isEmpty())
            rifiuta(u"unknown key "_s + m_oggetto.keys().constFirst());
    }

private:
    QJsonObject m_oggetto;
};

Evento evento(const QJsonValue &valore)
{
    Lettore da(valore);
    Evento letto;
    letto.tipo = da.obbligo(u"tipo"_s);
    letto.valore = da.testo(u"valore"_s);
    letto.luogo = da.testo(u"luogo"_s);
    letto.data = da.testo(u"data"_s);
    da.finisce();
    return letto;
}

Famiglia famiglia(const QJsonValue &valore);

Individuo individuo(const QJsonValue &valore)
{
    Lettore da(valore);
    Individuo letto;
    letto.ruolo = da.obbligo(u"ruolo"_s);
    letto.precisazione = da.testo(u"precisazione"_s);
    letto.nome = da.testo(u"nome"_s);
    letto.cognome = da.testo(u"cognome"_s);
    letto.eta = da.testo(u"età"_s);
    letto.sesso = da.testo(u"sesso"_s);
    letto.eventi = da.elenco(u"eventi"_s, evento);
    letto.famiglie = da.elenco(u"famiglie"_s, famiglia);
    da.finisce();
    return letto;
}

Famiglia famiglia(const QJsonValue &valore)
{
    Lettore da(valore);
    Famiglia letta;
    letta.tipo = da.obbligo(u"tipo"_s);
    letta.membri = da.elenco(u"membri"_s, individuo);
    letta.eventi = da.elenco(u"eventi"_s, evento);
    da.finisce();
    if (letta.membri.empty() && letta.eventi.empty())
        rifiuta(u"a family has neither members nor events"_s);
    return letta;
}

Atto atto(const QJsonValue &valore)
{
    Lettore da(valore);
    Atto letto;
    letto.volume = da.obbligo(u"volume"_s);
    letto.pagina = da.obbligo(u"pagina"_s);
    letto.numero = da.obbligo(u"numero"_s);
    letto.data = da.testo(u"data"_s);
    letto.persone = da.elenco(u"persone"_s, individuo);
    letto.titolo = da.obbligo(u"titolo"_s);
    letto.testo = da.obbligo(u"testo"_s);
    letto.traduzione = da.testo(u"traduzione"_s);
    da.finisce();
    return letto;
}

Registro registro(const QJsonValue &valore)
{
    Lettore da(valore);
    Registro letto;
    letto.titolo = da.obbligo(u"titolo"_s);
    letto.tipo = da.obbligo(u"tipo"_s);
    letto.periodo = da.obbligo(u"periodo"_s);
    letto.dataIniziale = da.obbligo(u"dataIniziale"_s);
    letto.dataFinale = da.obbligo(u"dataFinale"_s);
    letto.supporto = da.testo(u"supporto"_s);
    letto.atti = da.elenco(u"atti"_s, atto);
    da.finisce();
    return letto;
}

Archivio archivio(const QJsonValue &valore)
{
    Lettore da(valore);
    Archivio letto;
    letto.nome = da.obbligo(u"nome"_s);
    letto.abbreviato = da.testo(u"abbreviato"_s);
    letto.gruppo = da.testo(u"gruppo"_s);
    letto.registri = da.elenco(u"registri"_s, registro);
    da.finisce();
    return letto;
}

} // namespace

std::vector<Archivio> leggi()
{
    QFile file(u":/demo/atti.json"_s);
    QJsonParseError errore;
    if (!file.open(QIODevice::ReadOnly))
        rifiuta(file.errorString());
    const QJsonDocument documento = QJsonDocument::fromJson(file.readAll(), &errore);
    if (errore.error != QJsonParseError::NoError)
        rifiuta(errore.errorString());
    std::vector<Archivio> letti;
    const QJsonArray valori = documento.array();
    for (const auto &valore : valori)
        letti.push_back(archivio(valore));
    return letti;
}

QString scritturaData(const QString &data, int volta)
{
    if (data.isEmpty())
        return {};
    static const QStringList mesi{u"gennaio"_s,   u"febbraio"_s, u"marzo"_s,    u"aprile"_s,
                                  u"maggio"_s,    u"giugno"_s,   u"luglio"_s,   u"agosto"_s,
                                  u"settembre"_s, u"ottobre"_s,  u"novembre"_s, u"dicembre"_s};
    const QString anno = data.left(4);
    const int mese = data.mid(5, 2).toInt();
    const int giorno = data.mid(8, 2).toInt();
    const QString &nome = mesi.at(mese - 1);
    switch (volta % 6) {
    case 0:
        return u"%1 %2 %3"_s.arg(giorno).arg(nome, anno);
    case 1:
        return u"%1/%2/%3"_s.arg(giorno).arg(mese).arg(anno);
    case 2:
        return u"%1 %2 %3"_s.arg(giorno).arg(nome.left(3).toUpper(), anno);
    case 3:
        return u"%1-%2-%3"_s.arg(giorno).arg(mese).arg(anno);
    case 4:
        return data;
    default:
        return u"%1.%2.%3"_s.arg(giorno).arg(mese).arg(anno);
    }
}

Conto conta(const std::vector<Individuo> &persone)
{
    Conto tutto;
    for (const Individuo &persona : persone) {
        ++tutto.individui;
        tutto.eventi += static_cast<int>(persona.eventi.size());
        for (const Famiglia &sua : persona.famiglie) {
            const Conto dentro = conta(sua.membri);
            tutto.individui += dentro.individui;
            tutto.famiglie += dentro.famiglie + 1;
            tutto.eventi += dentro.eventi + static_cast<int>(sua.eventi.size());
        }
    }
    return tutto;
}

} // namespace esempi
