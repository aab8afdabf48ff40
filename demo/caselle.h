#pragma once

#include "demo/esempi.h"

#include <QMap>

// Che cosa va in ogni casella della pagina di un atto, dal nome che la casella dice a chi la sente
// ("Padre: Cognome"). Le date sono AAAA-MM-GG. Lancia Guasto se l'atto dice qualcosa per cui la
// pagina non ha caselle.
QMap<QString, QString> caselleDi(const esempi::Atto &atto);
