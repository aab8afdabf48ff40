#pragma once

#include "platform/finestre/avanzamento.h"

namespace avanzamento
{

// Come `compie`, ma il lavoro gira in un filo suo: la finestra resta viva anche dove il disco si fa
// aspettare. Il lavoro non tocca finestre; annullato, lancia. Ciò che lancia passa a chi chiama.
void compieAParte(QWidget *sopra, const QString &titolo,
                  const std::function<void(const Passo &)> &lavoro);

} // namespace avanzamento
