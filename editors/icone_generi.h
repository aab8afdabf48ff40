#pragma once

#include <QIcon>

// L'icona di un genere di Traduzioni: ruoli, famiglie, eventi, testi, file, operatori, indirizzi.
QIcon iconaDelGenere(int genere);
// L'icona di una tabella ("Voci"); quella di ogni tabella che non ha un elenco suo è la stessa del
// genere con cui vi si arriva.
QIcon iconaDellaTabella(const QString &tabella);
