#include "editors/casella_ora.h"

#include "platform/lingua/italiano.h"

namespace
{

constexpr int lungaData = 10;

// Il giorno di una data o di un istante; vuoto se il valore non ne ha uno che si capisca.
QString giornoDi(const QVariant &valore)
{
    return italiano::leggiData(valore.toString().left(lungaData)).value_or(QString());
}

// Il giorno che ha un'ora senza giorno.
QString senzaGiorno()
{
    return italiano::leggiOra(u"0").value_or(QString()).left(lungaData);
}

} // namespace

void CasellaOra::segue(const Casella *unaData)
{
    m_data = unaData;
    connect(unaData, &Casella::cambiata, this, &CasellaOra::segueGiorno);
}

void CasellaOra::presenta()
{
    m_giorno.clear();
    CasellaLetta::presenta();
}

// Una data cancellata, o scritta a metà, non toglie all'ora il giorno che aveva.
QString CasellaOra::giorno() const
{
    if (!m_giorno.isEmpty() || m_data == nullptr)
        return m_giorno;
    return giornoDi(m_data->mostrato());
}

void CasellaOra::segueGiorno()
{
    const QString nuovo = giornoDi(m_data->valore());
    if (nuovo.isEmpty() || nuovo == giorno())
        return;
    const auto ora = italiano::leggiOra(valore().toString());
    const QString suo = ora ? ora->left(lungaData) : QString();
    const bool stesso = suo == giorno() || suo == senzaGiorno();
    m_giorno = nuovo;
    daRileggere();
    if (ora && stesso)
        riscrive(scritto(nuovo + ora->mid(lungaData)));
}

QString CasellaOra::scritto(const QVariant &valore) const
{
    return italiano::mostraOra(valore.toString());
}

std::optional<QVariant> CasellaOra::legge(const QString &testo) const
{
    return italiano::leggiOra(testo, giorno());
}

QString CasellaOra::motivo() const
{
    return QStringLiteral("Non è stata inserita un'ora valida");
}
