# Puts together the folder SITE that a web server offers: the page from WEB with its ICON, PROGRAM.js and PROGRAM.wasm,
# and the show's files from DATA. The licences of what is in the program come from LICENSE and from the libraries' SOURCES.
file(REMOVE_RECURSE ${SITE})
file(MAKE_DIRECTORY ${SITE}/licenses)

set(files zev.mp3 zev_voc.mp3 Vera.ttf Arial)
list(TRANSFORM files PREPEND ${DATA}/ OUTPUT_VARIABLE paths)
file(COPY ${paths} ${PROGRAM}.wasm ${WEB}/index.html DESTINATION ${SITE})
file(COPY_FILE ${ICON} ${SITE}/icon.png)

# One script: the program's, then the page's own. Files may be sent compressed, so the page has to know their sizes to
# say how much of them has come.
set(sizes "")
foreach(file ${files} skav.wasm)
  file(SIZE ${SITE}/${file} size)
  string(APPEND sizes "    \"${file}\": ${size},\n")
endforeach()
file(READ ${PROGRAM}.js script)
string(APPEND script "\nconst FILES = {\n${sizes}};\n")
foreach(part texts performer music page)
  file(READ ${WEB}/${part}.js text)
  string(APPEND script "\n${text}")
endforeach()
file(WRITE ${SITE}/skav.js "${script}")

file(GLOB licenses ${DATA}/licenses/*)
file(COPY ${licenses} DESTINATION ${SITE}/licenses)
file(COPY_FILE ${LICENSE} ${SITE}/licenses/skav.LICENSE)
file(COPY_FILE ${SOURCES}/freetype-2.12.1/docs/FTL.TXT ${SITE}/licenses/FreeType.LICENSE)
# GLU's stands at the head of its sources.
file(READ ${SOURCES}/glu-9.0.2/src/libutil/error.c source)
string(FIND "${source}" "*/" end)
string(SUBSTRING "${source}" 0 ${end} license)
file(WRITE ${SITE}/licenses/GLU.LICENSE "${license}*/\n")

# A browser must not take an older script from its cache.
file(SHA256 ${SITE}/skav.js version)
string(SUBSTRING ${version} 0 8 version)
file(READ ${SITE}/index.html page)
string(REPLACE "skav.js" "skav.js?${version}" page "${page}")
file(WRITE ${SITE}/index.html "${page}")
