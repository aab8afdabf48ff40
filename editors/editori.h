#pragma once

// Dà alla pila delle finestre la fabbrica degli editori; va chiamata all'avvio.
void registraEditori();
