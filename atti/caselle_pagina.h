#pragma once

#include "editors/casella_formati.h"

#include <functional>

// Le caselle che la pagina dell'atto ha in forma più corta di quelle degli editori.

// Una data che si può dire rispetto a un'altra ("14", "14 11", "ieri", "-2"): lasciandola si legge
// per esteso ciò che se ne è capito.
class CasellaGiorno : public CasellaData
{
    Q_OBJECT

public:
    using CasellaData::CasellaData;

    // Da quale data (ISO) si conta; vuota se non c'è.
    void conta(std::function<QString()> riferimento) { m_riferimento = std::move(riferimento); }

protected:
    std::optional<QVariant> legge(const QString &testo) const override;
    void riordina() override;

private:
    std::function<QString()> m_riferimento;
};

// Un'ora senza il suo giorno ("20", "20:30"), che è quello della data cui appartiene.
class CasellaOraBreve : public CasellaLetta
{
    Q_OBJECT

public:
    using CasellaLetta::CasellaLetta;

    void segue(std::function<QString()> giorno) { m_giorno = std::move(giorno); }

protected:
    QString scritto(const QVariant &valore) const override;
    std::optional<QVariant> legge(const QString &testo) const override;
    QString motivo() const override;

private:
    std::function<QString()> m_giorno;
};

// Una lettera fra poche: si scrive, maiuscola o minuscola.
class CasellaLettera : public CasellaTesto
{
    Q_OBJECT

public:
    CasellaLettera(const DescrizioneCampo &descrizione, QWidget *sopra);

protected:
    std::optional<QVariant> legge(const QString &testo) const override;
    QString motivo() const override;
    void riordina() override;
};
