#pragma once

#include <QString>

// Il computer su cui gira il programma.
namespace sistema
{

// Grandezze in byte. La memoria virtuale è quella fisica con lo spazio di scambio.
struct Memoria {
    quint64 fisicaDisponibile = 0;
    quint64 fisicaTotale = 0;
    quint64 virtualeDisponibile = 0;
    quint64 virtualeTotale = 0;
};

// Il nome con cui il sistema si presenta (PRETTY_NAME di os-release(5)).
QString nome();
// La memoria secondo il nucleo (proc(5), /proc/meminfo); zero ciò che non si può sapere.
Memoria memoria(const QString &elenco = QStringLiteral("/proc/meminfo"));

} // namespace sistema
