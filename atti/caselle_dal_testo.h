#pragma once

#include "db/formule/formulario.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QTextCursor>

class Campo;
class FormuleScheda;
class Pagina;

// Le caselle di una pagina lette nel suo testo, quando il testo è stato scritto prima di loro. Ogni
// casella resta segnata come proposta finché chi trascrive la conferma, una per una con Invio o
// tutte insieme; finché la tastiera vi sta, nel testo si vede il posto da cui viene. Ciò che era
// scritto non è mai toccato.
class CaselleDalTesto : public QObject
{
    Q_OBJECT

public:
    CaselleDalTesto(Pagina *pagina, FormuleScheda *formule);

    // Riempie le caselle vuote con ciò che il testo dice; rende quante.
    int propone();
    // Quante aspettano una conferma.
    int inAttesa() const;
    void conferma();
    // Le caselle che nessuno ha confermato tornano com'erano.
    void ritira();

signals:
    // La casella è stata letta: ciò che da lei deriva si può proporre.
    void letta(Campo *campo);

private:
    std::vector<Campo *> proposte() const;
    bool soloTesto() const;
    void mostraDove(const Campo *campo);

    Pagina *m_pagina;
    FormuleScheda *m_formule;
    // Il posto nel testo segue ciò che nel testo cambia.
    QMap<modTarvola::scheda::Indirizzo, QTextCursor> m_posti;
    QString m_letto; // il testo guardato l'ultima volta senza che lo si chiedesse
};
