#include "db/archivio/corrispondenza.h"

#include "db/schema/generi.h"
#include "platform/anteriore/jet_testo.h"

#include <cmath>

namespace modTarvola
{

namespace
{

// Un testo passa intero per la memoria; nessuna trascrizione si avvicina a questa misura.
constexpr qint64 testoMassimo = qint64{32} << 20;

bool siSaLeggere(jet::Tipo tipo)
{
    switch (tipo) {
    case jet::Tipo::Booleano:
    case jet::Tipo::Byte:
    case jet::Tipo::Intero:
    case jet::Tipo::Lungo:
    case jet::Tipo::Doppio:
    case jet::Tipo::Data:
    case jet::Tipo::Testo:
    case jet::Tipo::Ole:
    case jet::Tipo::Nota:
        return true;
    }
    return false;
}

bool eLungo(jet::Tipo tipo)
{
    return tipo == jet::Tipo::Ole || tipo == jet::Tipo::Nota;
}

QVariant nulloSeVuoto(const QString &testo)
{
    return testo.isEmpty() ? QVariant() : QVariant(testo);
}

jet::Testo decifra(jet::Tipo tipo, QByteArrayView byte)
{
    return tipo == jet::Tipo::Ole ? jet::testoInByte(byte) : jet::testoDi(byte);
}

QByteArray tutto(jet::CampoLungo &campo)
{
    QByteArray riuniti;
    for (QByteArray pezzo = campo.legge(); !pezzo.isEmpty(); pezzo = campo.legge())
        riuniti.append(pezzo);
    return riuniti;
}

// Un numero scritto con la virgola mobile entra solo se è intero e non troppo grande.
std::optional<qint64> interoDa(std::optional<double> doppio)
{
    constexpr double massimo = 9007199254740992.0;
    if (!doppio || !(std::abs(*doppio) < massimo) || std::trunc(*doppio) != *doppio)
        return std::nullopt;
    return static_cast<qint64>(*doppio);
}

std::optional<qint64> interoDa(const QString &testo)
{
    bool bene = false;
    const qint64 letto = testo.toLongLong(&bene);
    return bene ? std::optional(letto) : std::nullopt;
}

} // namespace

Corrispondenza::Corrispondenza(const catalogo::Tabella &tabella, jet::Tabella fonte)
    : m_tabella(tabella.nome.toString()), m_fonte(std::move(fonte))
{
    for (const catalogo::Colonna &colonna : tabella.colonne) {
        const bool nellaChiave = m_nomi.size() < static_cast<qsizetype>(tabella.chiave().size());
        if (nellaChiave)
            m_chiave.append(m_nomi.size());
        if (colonna.specie == catalogo::Specie::Lungo)
            m_lungo = m_nomi.size();
        m_specie.append(colonna.specie);
        accosta(colonna.nome.toString(), nellaChiave);
    }
    for (const jet::Colonna &colonna : std::as_const(m_fonte.colonne)) {
        if (!m_nomi.contains(colonna.nome, Qt::CaseInsensitive) || !siSaLeggere(colonna.tipo))
            m_ignote.append(colonna.nome);
    }
}

void Corrispondenza::accosta(const QString &nome, bool obbligatoria)
{
    const jet::Colonna *fonte = m_fonte.colonna(nome);
    const bool leggibile = fonte != nullptr && siSaLeggere(fonte->tipo);
    if (obbligatoria && !leggibile)
        throw ado::Errore(
            ado::Causa::NonArchivio,
            QStringLiteral("nella tabella %1 del file manca la colonna %2").arg(m_tabella, nome));
    m_nomi.append(nome);
    m_fonti.append(leggibile ? fonte - m_fonte.colonne.constData() : -1);
    if (fonte == nullptr)
        m_mancanti.append(nome);
}

Corrispondenza::Valore Corrispondenza::numero(const jet::Scorritore &riga,
                                              const jet::Colonna &colonna)
{
    std::optional<qint64> letto;
    if (colonna.tipo == jet::Tipo::Doppio)
        letto = interoDa(riga.doppio(colonna));
    else if (colonna.tipo == jet::Tipo::Testo)
        letto = interoDa(jet::testoDi(riga.campo(colonna).byte).testo);
    else
        letto = riga.intero(colonna);
    return {letto ? QVariant::fromValue<qlonglong>(*letto) : QVariant(), letto.has_value()};
}

RigaLetta Corrispondenza::legge(Lettura &lettura, qint64 massimo) const
{
    RigaLetta riga;
    riga.valori.reserve(m_nomi.size());
    for (qsizetype i = 0; i < m_nomi.size(); ++i) {
        Valore letto = valore(lettura, i);
        riga.guasti += letto.intero ? 0 : 1;
        riga.valori.append(std::move(letto.valore));
    }
    if (m_lungo >= 0) {
        const QVariant genere = riga.valori.at(m_nomi.indexOf(QStringLiteral("Tipo")));
        riga.lungo = contenutoLungo(lettura, genere, massimo);
        riga.guasti += riga.lungo.intero ? 0 : 1;
        if (riga.lungo.specie == ContenutoLungo::Testo)
            riga.valori[m_lungo] = riga.lungo.testo;
    }
    return riga;
}

void Corrispondenza::porta(Lettura &lettura,
                           const std::function<bool(const QByteArray &)> &perPezzo) const
{
    // Chi l'ha misurato ha già contato i suoi byte fra quelli del file.
    qint64 residuo = lettura.pagine.byte();
    jet::CampoLungo campo(lettura.pagine, campoLungo(lettura).byte, residuo);
    for (QByteArray pezzo = campo.legge(); !pezzo.isEmpty(); pezzo = campo.legge()) {
        lettura.byteLunghi += pezzo.size();
        if (!perPezzo(pezzo))
            return;
    }
}

Corrispondenza::Valore Corrispondenza::valore(Lettura &lettura, qsizetype colonna) const
{
    const qsizetype posto = m_fonti.at(colonna);
    if (posto < 0 || colonna == m_lungo)
        return {};
    const jet::Colonna &fonte = m_fonte.colonne.at(posto);
    const jet::Campo campo = lettura.righe.campo(fonte);
    if (campo.nullo)
        return {{}, !campo.guasto};
    if (m_specie.at(colonna) == catalogo::Specie::Numero)
        return numero(lettura.righe, fonte);
    return testo(lettura, fonte, m_specie.at(colonna));
}

Corrispondenza::Valore Corrispondenza::testo(Lettura &lettura, const jet::Colonna &colonna,
                                             catalogo::Specie specie) const
{
    const QByteArrayView byte = lettura.righe.campo(colonna).byte;
    if (colonna.tipo == jet::Tipo::Testo) {
        const jet::Testo letto = jet::testoDi(byte);
        return {nulloSeVuoto(letto.testo), letto.intero};
    }
    if (colonna.tipo == jet::Tipo::Data) {
        const auto giorni = lettura.righe.doppio(colonna);
        // Di un giorno si tiene quello; le altre date sono istanti e hanno sempre l'ora.
        const bool conOra = specie != catalogo::Specie::Giorno;
        const QString iso = giorni ? jet::isoDi(*giorni, conOra) : QString();
        return {nulloSeVuoto(iso), !iso.isEmpty()};
    }
    if (eLungo(colonna.tipo)) {
        jet::CampoLungo campo(lettura.pagine, byte, lettura.residuo);
        if (campo.lunghezza() > testoMassimo)
            return {{}, false};
        const jet::Testo letto = decifra(colonna.tipo, tutto(campo));
        return {nulloSeVuoto(letto.testo), letto.intero && campo.intero()};
    }
    const Valore letto = numero(lettura.righe, colonna);
    return {letto.valore.isValid() ? letto.valore.toString() : QVariant(), letto.intero};
}

jet::Campo Corrispondenza::campoLungo(const Lettura &lettura) const
{
    const qsizetype posto = m_fonti.at(m_lungo);
    return posto < 0 ? jet::Campo() : lettura.righe.campo(m_fonte.colonne.at(posto));
}

ContenutoLungo Corrispondenza::contenutoLungo(Lettura &lettura, const QVariant &genere,
                                              qint64 massimo) const
{
    const jet::Campo campo = campoLungo(lettura);
    ContenutoLungo contenuto;
    contenuto.intero = !campo.guasto;
    if (campo.nullo)
        return contenuto;
    const jet::Tipo tipo = m_fonte.colonne.at(m_fonti.at(m_lungo)).tipo;
    if (!eLungo(tipo)) {
        const Valore letto =
            testo(lettura, m_fonte.colonne.at(m_fonti.at(m_lungo)), catalogo::Specie::Lungo);
        return {letto.valore.isValid() ? ContenutoLungo::Testo : ContenutoLungo::Nulla,
                letto.valore.toString(), 0, letto.intero};
    }
    jet::CampoLungo lungo(lettura.pagine, campo.byte, lettura.residuo);
    contenuto.intero = lungo.intero();
    contenuto.lunghezza = lungo.lunghezza();
    const bool eTesto = genere == Nota || genere == TestoRiportato;
    if (genere != FileAllegato && lungo.lunghezza() <= testoMassimo) {
        const jet::Testo letto = decifra(tipo, tutto(lungo));
        if (eTesto || (letto.intero && !letto.testo.contains(QChar(u'\0')))) {
            contenuto.specie =
                letto.testo.isEmpty() ? ContenutoLungo::Nulla : ContenutoLungo::Testo;
            contenuto.testo = letto.testo;
            contenuto.intero = contenuto.intero && letto.intero;
            return contenuto;
        }
    }
    const bool troppo = contenuto.lunghezza > (eTesto ? testoMassimo : massimo);
    contenuto.specie = troppo ? ContenutoLungo::Nulla : ContenutoLungo::Byte;
    contenuto.intero = contenuto.intero && !troppo;
    return contenuto;
}

} // namespace modTarvola
