# Translations beside English. telvane_add_translations(<target> <name>) compiles every
# translations/<name>_<language>.ts with lrelease and embeds the results in <target> as
# :/i18n/<name>_<language>.qm, so a program finds its translation wherever it is installed.
find_program(LRELEASE_PROGRAM lrelease HINTS /usr/lib/qt6/bin REQUIRED)

function(telvane_add_translations target name)
    file(GLOB ts_files ${PROJECT_SOURCE_DIR}/translations/${name}_*.ts)
    set(qrc ${CMAKE_CURRENT_BINARY_DIR}/${name}_translations.qrc)
    set(qrc_body "<RCC>\n<qresource prefix=\"/i18n\">\n")
    set(qm_files)
    foreach(ts ${ts_files})
        get_filename_component(base ${ts} NAME_WE)
        set(qm ${CMAKE_CURRENT_BINARY_DIR}/${base}.qm)
        add_custom_command(OUTPUT ${qm}
            COMMAND ${LRELEASE_PROGRAM} -silent ${ts} -qm ${qm}
            DEPENDS ${ts} VERBATIM)
        string(APPEND qrc_body "    <file alias=\"${base}.qm\">${qm}</file>\n")
        list(APPEND qm_files ${qm})
    endforeach()
    string(APPEND qrc_body "</qresource>\n</RCC>\n")
    file(GENERATE OUTPUT ${qrc} CONTENT "${qrc_body}")
    # rcc run here rather than through qt_add_resources, which cannot see that the embedded
    # files are built and would keep an outdated translation.
    set(cpp ${CMAKE_CURRENT_BINARY_DIR}/qrc_${name}_translations.cpp)
    string(REPLACE "-" "_" resource_name ${name}_translations)
    add_custom_command(OUTPUT ${cpp}
        COMMAND Qt6::rcc --name ${resource_name} --no-compress ${qrc} -o ${cpp}
        DEPENDS ${qrc} ${qm_files} VERBATIM)
    target_sources(${target} PRIVATE ${cpp})
endfunction()
