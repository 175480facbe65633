# qx_embed_text(<target> <symbol> <files...>)
#
# Compiles text files (table definitions, view texts) into <target> as one
# `std::vector<qx::EmbeddedFile> <symbol>()` so that nothing is read from the source tree at
# run time. Each entry keeps the file name and its text.
function(qx_embed_text target symbol)
    set(out ${CMAKE_CURRENT_BINARY_DIR}/${symbol}.cpp)
    set(body "#include <string>\n#include <vector>\n#include \"db/EmbeddedFile.h\"\nnamespace qx {\nstd::vector<EmbeddedFile> ${symbol}() {\n    return {\n")
    foreach(f ${ARGN})
        get_filename_component(abs ${f} ABSOLUTE)
        get_filename_component(name ${f} NAME)
        file(READ ${abs} text)
        set(body "${body}        {\"${name}\", R\"__qx__(${text})__qx__\"},\n")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${abs})
    endforeach()
    set(body "${body}    };\n}\n}  // namespace qx\n")
    file(GENERATE OUTPUT ${out} CONTENT "${body}")
    target_sources(${target} PRIVATE ${out})
endfunction()
