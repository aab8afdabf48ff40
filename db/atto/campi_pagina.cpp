#include "db/atto/campi_pagina.h"

#include "db/lavoro/lavoro.h"
#include "db/schema/schema.h"

#include <algorithm>
#include <array>

namespace modTarvola::scheda
{

namespace
{

const QString tabella = QStringLiteral("CampiPagina");

// Il posto di ogni uso è il numero con cui sta nell'archivio: non cambia più.
constexpr std::array usi{Uso::Mostrata, Uso::Saltata, Uso::Nascosta};

qint64 numero(Uso uso)
{
    return std::find(usi.begin(), usi.end(), uso) - usi.begin();
}

} // namespace

Scelte leggeScelte(ado::Connection &connessione, const QString &registro)
{
    Scelte scelte;
    if (!haTabella(connessione, tabella))
        return scelte;
    connessione.leggi(
        {QStringLiteral("SELECT Posto, Evento, Campo, Uso FROM CampiPagina WHERE Registro = ?"),
         {registro},
         {}},
        [&scelte](const ado::Riga &riga) {
            const qint64 uso = riga.intero(3);
            if (uso >= 0 && uso < static_cast<qint64>(usi.size()))
                scelte.insert({riga.testo(0), static_cast<int>(riga.intero(1)), riga.testo(2)},
                              usi.at(static_cast<size_t>(uso)));
            return true;
        });
    return scelte;
}

void scriveScelte(ado::Connection &connessione, const QString &registro, const Scelte &scelte)
{
    if (scelte.isEmpty() && !haTabella(connessione, tabella))
        return;
    Lavoro lavoro(connessione, QStringLiteral("Scelti i campi della scheda"));
    const QVariant presente = connessione.valore(
        {QStringLiteral("SELECT Codice FROM Registri WHERE Codice = ?"), {registro}, {}});
    if (!presente.isValid())
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("il record %1 non esiste più").arg(registro));
    creaAccanto(connessione, tabella);
    connessione.Execute(
        {QStringLiteral("DELETE FROM CampiPagina WHERE Registro = ?"), {registro}, {}});
    for (auto una = scelte.cbegin(); una != scelte.cend(); ++una)
        connessione.Execute(
            {QStringLiteral("INSERT INTO CampiPagina (Posto, Campo, Evento, "
                            "Registro, Uso) VALUES (?, ?, ?, ?, ?)"),
             {una.key().posto, una.key().campo, una.key().evento, presente, numero(una.value())},
             {}});
    lavoro.conferma();
}

} // namespace modTarvola::scheda
