#pragma once

/// handleCount answers how many handles (descriptors) this process holds.
unsigned long handleCount();
