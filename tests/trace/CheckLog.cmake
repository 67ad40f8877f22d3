# The log of the interface's tests: cmake -DLOG=<file> -P CheckLog.cmake
file(READ ${LOG} log)
foreach(wanted
        "^kxtrace [0-9.]+, calls go to [^\n]*kxgraphic"
        "KX_lock\\(bitmap null\\) = 0x0007 IllegalParameter\r?\n"
        # Through the table that the library filled, and by the library itself.
        "\n *[0-9]+ +[0-9.]+   KX_lock\\(bitmap 0x[0-9a-f]+ \\[67x9 format 6\\]\\) = 0"
        "KX_reportError\\(code 0xA, line 265, file \"array.h\"\\) 0x000A IndexOutOfBound"
        "\n[0-9]+ calls, [0-9]+ failed"
        "\n +[0-9]+ KX_setPixel\r?\n")
  if(NOT log MATCHES "${wanted}")
    message(FATAL_ERROR "${LOG} lacks ${wanted}")
  endif()
endforeach()
