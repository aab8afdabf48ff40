#include "editors/casella_formati.h"

#include "platform/lingua/italiano.h"

void CasellaLetta::riordina()
{
    if (vuota() && !testo().isEmpty())
        riscrive({});
}

QString CasellaData::scritto(const QVariant &valore) const
{
    return descrizione().formato == Formato::DataEstesa
               ? italiano::mostraDataEstesa(valore.toString())
               : italiano::mostraData(valore.toString());
}

std::optional<QVariant> CasellaData::legge(const QString &testo) const
{
    return italiano::leggiData(testo);
}

QString CasellaData::motivo() const
{
    return QStringLiteral("Non è stata inserita una data valida");
}

std::optional<QVariant> CasellaPagina::legge(const QString &testo) const
{
    return italiano::leggiPagina(testo);
}

QString CasellaPagina::motivo() const
{
    return QStringLiteral("Non è stata inserito un numero di pagina valido");
}
