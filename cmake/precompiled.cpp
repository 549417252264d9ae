// The precompiled headers need a source to belong to.
