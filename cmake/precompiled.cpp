// The source that a precompiled header needs to belong to a target.
