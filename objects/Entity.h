#pragma once

// The common root of everything that can be asked for an icon, of objects of the toolkit and of others. Code
// holds an Entity* and casts down with a run-time type check.
class Entity
{
public:
    Entity() = default;
    Entity(const Entity &) = default;
    Entity &operator=(const Entity &) = default;
    virtual ~Entity() = default;
};
