#pragma once

#include "platform/riparazione/pagine.h"
#include "platform/riparazione/salvate.h"

// Le colonne di una tabella che altri hanno rifatto, messe in corrispondenza con le nostre.
namespace salvataggio
{

// Scrive in `tabella.posti` dove vanno le colonne del file, date come la sua definizione le elenca;
// niente se sono già le nostre. Una tabella che altri hanno rifatto può averne in più, o in un
// altro ordine. Una colonna di nome sconosciuto, dove la nostra manca, è la nostra col nome
// rovinato.
void accosta(Tabella &tabella, const QStringList &sue);
// La riga come sarebbe nella tabella nostra; le colonne che non ha restano Null.
QList<pagine::Valore> riordinata(const Tabella &tabella, const QList<pagine::Valore> &riga);

} // namespace salvataggio
