# Dove c'è ccache, ricompilare ciò che non è cambiato non costa nulla. Con le intestazioni
# precompilate lo fa solo se gli si dice che le loro definizioni e le loro date non contano.
find_program(TARVOLA_CCACHE ccache)
mark_as_advanced(TARVOLA_CCACHE)
if(TARVOLA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${TARVOLA_CCACHE})
endif()
