target_sources(
  tarvola_finestre
  PRIVATE platform/dialoghi.cpp platform/dialoghi.h platform/messaggi.cpp platform/messaggi.h)
