#pragma once

#include "editors/casella_testo.h"

// Una casella di cui si legge un formato: lasciata con soli spazi, si svuota.
class CasellaLetta : public CasellaTesto
{
    Q_OBJECT

public:
    using CasellaTesto::CasellaTesto;

protected:
    void riordina() override;
};

// Una data ("04 03 1750", o estesa "4 mar 1750"). Il valore è ISO, senza ora.
class CasellaData : public CasellaLetta
{
    Q_OBJECT

public:
    using CasellaLetta::CasellaLetta;

protected:
    QString scritto(const QVariant &valore) const override;
    std::optional<QVariant> legge(const QString &testo) const override;
    QString motivo() const override;
};

// Un numero di pagina. Il valore è un intero da 0 a 2147483647.
class CasellaPagina : public CasellaLetta
{
    Q_OBJECT

public:
    using CasellaLetta::CasellaLetta;

protected:
    std::optional<QVariant> legge(const QString &testo) const override;
    QString motivo() const override;
};
