# The one place of the project's version and of the library's ABI version.
set(ZRCFG_VERSION 0.1.0)
set(ZRCFG_SOVERSION 0)
