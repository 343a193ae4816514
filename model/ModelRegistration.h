#pragma once
// Registration of the loads module's persistent classes with the object base.

/// Creates one prototype each of the load case, the combination, the stored combination set
/// and the envelope, in this order, and registers them (persistent). Idempotent.
void RegisterLoadClasses();
