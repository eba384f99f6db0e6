set(authorize_SOURCES)
