#pragma once

class QWidget;
class Repertorio;

// La finestra con le proposte che non si vogliono più vedere in un archivio.
namespace tolte
{

// Le mostra e lascia rimetterle; ciò che vi si fa vale subito. Mostra l'errore se l'archivio non lo
// accetta.
void mostra(QWidget *sopra, Repertorio &repertorio);

} // namespace tolte
