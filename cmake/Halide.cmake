# Image pipelines in Halide, compiled ahead of time: a generator program runs during the build and writes one object
# file for each instruction set, of which the first that the processor has is chosen at run time. Halide and LLVM
# are needed to build, not to run.
find_package(Halide 14 REQUIRED)

# Best first: the generated code takes the first set that the processor has. Never "host": what Debian's Halide says
# of the host claims AVX-512 variants that it lacks, and the program runs on other processors than it was built on.
set(LUMISORT_HALIDE_TARGETS
    x86-64-linux-avx-avx2-f16c-fma-sse41
    x86-64-linux-sse41
    x86-64-linux)
set(LUMISORT_HALIDE_FEATURES "")
if(LUMISORT_SANITIZERS MATCHES "address")
    list(APPEND LUMISORT_HALIDE_FEATURES asan)
elseif(LUMISORT_SANITIZERS MATCHES "thread")
    list(APPEND LUMISORT_HALIDE_FEATURES tsan)
endif()

# The pipelines of one room: every .cpp below the folder generators/ holds one Halide generator that is registered
# under the file's name in snake case (generators/SpectralExposure.cpp: spectral_exposure), and becomes the function
# of that name, declared in <spectral_exposure.h>. The room links the target <room>-pipelines.
#
#   lumisort_halide_pipelines()
#
# Schedules hold no `parallel`: strips run on the program's own pool.
function(lumisort_halide_pipelines)
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
    string(REPLACE "/" "-" room ${folder})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/generators/*.cpp)
    set(generators ${room}-generators)
    add_halide_generator(${generators} SOURCES ${sources})
    target_include_directories(${generators} PRIVATE ${PROJECT_SOURCE_DIR}/src)
    # The generators run in the build alone: without sanitizers, which find leaks in Halide, and without optimising
    # across files.
    set_target_properties(${generators} PROPERTIES INTERPROCEDURAL_OPTIMIZATION OFF)
    target_compile_options(${generators} PRIVATE -O0 -fno-sanitize=all -U_FORTIFY_SOURCE
                                                 -Wno-conversion -Wno-shadow)
    target_link_options(${generators} PRIVATE -fno-sanitize=all)
    add_library(${room}-pipelines INTERFACE)
    set(runtime "")
    foreach(source IN LISTS sources)
        get_filename_component(name ${source} NAME_WE)
        string(REGEX REPLACE "([a-z0-9])([A-Z])" "\\1_\\2" name ${name})
        string(TOLOWER ${name} name)
        add_halide_library(${name} FROM ${generators} TARGETS ${LUMISORT_HALIDE_TARGETS}
                           FEATURES ${LUMISORT_HALIDE_FEATURES} ${runtime})
        target_include_directories(${room}-pipelines SYSTEM INTERFACE ${CMAKE_CURRENT_BINARY_DIR})
        target_link_libraries(${room}-pipelines INTERFACE ${name})
        if(NOT runtime)
            set(runtime USE_RUNTIME ${name}.runtime)
        endif()
    endforeach()
endfunction()
