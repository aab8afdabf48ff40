#pragma once

#include <QString>
#include <QStringView>

#include <optional>

// Le date dette rispetto a un'altra.
namespace italiano
{

// Legge un giorno come lo scrive chi ha già davanti una data: "14" è del mese e dell'anno di
// `riferimento` (ISO), "14 11" del suo anno, "ieri", "oggi", "domani", "-2" e "+1" si contano da
// esso. Ogni altro testo, e tutto se `riferimento` non è ISO, vale come per leggiData. Rende
// "AAAA-MM-GG", niente se non è un giorno.
std::optional<QString> leggiGiorno(QStringView testo, QStringView riferimento);

} // namespace italiano
