// Where a precompiled header is made; nothing else is here.
