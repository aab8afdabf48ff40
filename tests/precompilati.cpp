// Un sorgente perché le intestazioni precompilate delle prove siano di qualcuno.
