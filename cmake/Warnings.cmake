# Flags of every target. Warnings are errors; third-party headers come in as system headers.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                    -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Werror)
# Fields that a designated initialiser leaves out have their defaults; g++ 12 warns all the same.
add_compile_options(-Wno-missing-field-initializers)
# A fused multiply-add rounds once where the formula rounds twice. Off, so that a sum is the same
# number on every processor and equals the literal double-precision version in the tests.
add_compile_options(-ffp-contract=off)
add_compile_options(-fno-omit-frame-pointer)
if(LUMISORT_SANITIZERS)
    add_compile_options(-fsanitize=${LUMISORT_SANITIZERS} -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${LUMISORT_SANITIZERS})
    # The sanitizers' extra branches make g++ 12 see uninitialised values that are not there.
    add_compile_options(-Wno-maybe-uninitialized)
else()
    add_compile_definitions($<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>)
    add_compile_options(-fstack-protector-strong)
endif()
add_compile_definitions(_GLIBCXX_ASSERTIONS)
if(LUMISORT_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()

# Optimised across files, the growth of Qt's hash looks to g++ 12 as if it could ask for all memory there is.
if(CMAKE_INTERPROCEDURAL_OPTIMIZATION)
    add_link_options(-Wno-alloc-size-larger-than)
endif()
