#pragma once

#include <QString>

#include <vector>

// Il meno che si possa fare col motore, in C e senza altro: il metro delle misure.

// Legge tutti i campi degli individui con le chiavi date.
void righePerChiave(const QString &percorso, const std::vector<qint64> &chiavi);
// Legge una volta chiavi e cognomi di tutti gli individui, tiene i distinti e ordina quelli.
void ordinaIlMeno(const QString &percorso);
