#pragma once

#include "platform/motore/ado.h"

#include <optional>

// Gli atti di un registro, nell'ordine in cui furono scritti.
namespace modTarvola
{

// Il codice dell'ultimo atto del registro; vuoto se non ne ha.
QString ultimoAtto(ado::Connection &connessione, const QString &registro);
// Il codice dell'atto che nel registro segue, o precede, quello dato; vuoto se è il primo o
// l'ultimo. Di un codice vuoto, che sta per un atto nuovo, il precedente è l'ultimo.
QString attoAccanto(ado::Connection &connessione, const QString &registro, const QString &atto,
                    bool segue);
// I codici degli ultimi atti del registro, dal più vecchio al più nuovo.
QStringList ultimiAtti(ado::Connection &connessione, const QString &registro, int quanti);
// Gli atti dei registri di un tipo: Codice, Registro.
ado::Comando attiDiTipo(int tipo);
// Il titolo del registro; vuoto se non ne ha.
QString titoloDiRegistro(ado::Connection &connessione, const QString &registro);
struct RegistroTrovato {
    QString codice;
    QString archivio;
    int tipo = 0;
};
// Il registro del codice dato, o quello in cui sta l'atto del record; niente se non c'è.
std::optional<RegistroTrovato> registroDi(ado::Connection &connessione, const QString &codice);
// L'atto cui il record appartiene: una voce, o ciò che a una voce porta salendo di proprietario in
// proprietario. Vuoto se non appartiene a nessuno.
QString attoDi(ado::Connection &connessione, const QString &codice);

} // namespace modTarvola
