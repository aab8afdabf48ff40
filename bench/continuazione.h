#pragma once

#include <QString>

// La via più corta attraverso un testo che la pagina propone di continuare.
namespace continuazione
{

enum class Mossa { Lettera, Indietro, Parola, Tratto, Tutto };

// Il tasto con cui conviene andare avanti a chi sa `tutto` il testo, ne vede già `scritto` e, dopo
// il cursore, `proposta`, segnata fino a `tratto`. Che cosa si proporrà dopo non si sa.
Mossa sceglie(const QString &scritto, const QString &tutto, const QString &proposta,
              qsizetype tratto);

// Quante lettere della proposta sono quelle che si vogliono scrivere.
qsizetype giuste(const QString &scritto, const QString &tutto, const QString &proposta);

} // namespace continuazione
