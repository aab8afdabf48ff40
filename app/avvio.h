#pragma once

class QApplication;

// Prepara l'applicazione: nome, lingua italiana anche del toolkit, icona, fabbrica degli editori.
void preparaApplicazione(QApplication &applicazione);
