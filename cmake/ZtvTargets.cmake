# Sets the flags of all of the project's own targets, and defines the two functions that declare one.

add_library(ztv_flags INTERFACE)
target_compile_definitions(ztv_flags INTERFACE
    QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(MSVC)
    target_compile_options(ztv_flags INTERFACE /W4 /permissive- /utf-8)
else()
    target_compile_options(ztv_flags INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
        -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
    # No fused operations, so that single-precision results are the same on every processor.
    target_compile_options(ztv_flags INTERFACE -ffp-contract=off)
endif()
if(ZTV_WERROR)
    target_compile_options(ztv_flags INTERFACE $<IF:$<BOOL:${MSVC}>,/WX,-Werror>)
endif()
if(ZTV_SANITIZE)
    target_compile_options(ztv_flags INTERFACE
        $<$<NOT:$<BOOL:$<TARGET_PROPERTY:ZTV_QUICK_TO_BUILD>>>:-O1> -g1 -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(ztv_flags INTERFACE -fsanitize=address,undefined)
endif()
if(ZTV_FUZZ)
    target_compile_options(ztv_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(ZTV_COVERAGE)
    target_compile_options(ztv_flags INTERFACE -O0 --coverage)
    target_link_options(ztv_flags INTERFACE --coverage)
endif()

# ztv_library(name SOURCES ... LINKS ...): one static library per folder. Its sources are included by
# their path below src/ (or sim/, tests/), so that an include line shows the layer it reaches into.
function(ztv_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE ztv_flags)
endfunction()

# ztv_pictures(target name FOLDER prefix PERCENTS ... FILES ...): draws SVG files at these sizes and puts them among the
# target's resources, as PREFIX/NAME/PERCENT.png.
function(ztv_pictures target name)
    cmake_parse_arguments(ARG "" "FOLDER" "PERCENTS;FILES" ${ARGN})
    set(base ${CMAKE_CURRENT_BINARY_DIR}/pictures_${name})
    set(drawn)
    foreach(file IN LISTS ARG_FILES)
        get_filename_component(picture ${file} NAME_WE)
        foreach(percent IN LISTS ARG_PERCENTS)
            list(APPEND drawn ${base}/${picture}/${percent}.png)
        endforeach()
    endforeach()
    add_custom_command(
        OUTPUT ${drawn}
        COMMAND render-pictures ${base} ${ARG_PERCENTS} ${ARG_FILES}
        DEPENDS render-pictures ${ARG_FILES}
        COMMENT "Drawing the pictures of ${target}"
        VERBATIM)
    qt_add_resources(${target} ${name} PREFIX ${ARG_FOLDER} BASE ${base} FILES ${drawn})
endfunction()

# ztv_program(name SOURCES ... LINKS ...)
function(ztv_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} ztv_flags)
endfunction()
