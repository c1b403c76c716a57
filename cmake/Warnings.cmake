# One set of warnings for everything we compile ourselves; the presets turn them into errors.
option(ORVIN_WERROR "Treat warnings as errors" OFF)

function(orvin_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wold-style-cast -Wcast-align -Wdouble-promotion -Wimplicit-fallthrough
    $<$<BOOL:${ORVIN_WERROR}>:-Werror>)
endfunction()
