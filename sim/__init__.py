"""The simulated printing world from Python: see World in world.py."""
