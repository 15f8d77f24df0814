# Reads from a file built for Windows what it tells of itself.
#   cmake -DTOOL=<windres> -DFILE=... -DNAME=conduit.exe -DVERSION=1.2.3 [-DMANIFEST=ON]
#         -P CheckResources.cmake
execute_process(COMMAND ${TOOL} --input ${FILE} --output-format=rc
                OUTPUT_VARIABLE resources COMMAND_ERROR_IS_FATAL ANY)

function(require pattern)
  if(NOT resources MATCHES "${pattern}")
    message(SEND_ERROR "${FILE}: nothing in its resources matches ${pattern}\n${resources}")
  endif()
endfunction()

string(REPLACE "." ", " numbers "${VERSION}")
require("FILEVERSION ${numbers}, 0\n")
require("PRODUCTVERSION ${numbers}, 0\n")
string(REPLACE "." "\\." version "${VERSION}")
require("\"FileVersion\", \"${version}\"")
require("\"ProductVersion\", \"${version}\"")
require("\"FileDescription\", \"[A-Z][a-z ]+")
require("\"OriginalFilename\", \"${NAME}\"")
require("\"ProductName\", \"[A-Z]")
if(resources MATCHES "CompanyName|LegalCopyright")
  message(SEND_ERROR "${FILE} names its maker")
endif()
if(MANIFEST)
  require("<activeCodePage [^>]*SMI/2019/WindowsSettings\"\">UTF-8</activeCodePage>")
  require("<longPathAware [^>]*SMI/2016/WindowsSettings\"\">true</longPathAware>")
  require("<supportedOS Id=\"\"{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}\"\"/>")
endif()
