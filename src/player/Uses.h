// What a part of the player uses of something larger: references to these groups of fields, and nothing else. Made of
// any object that has them all; `const` in front of a group means that the part only reads it. The object has to
// outlive the part.
#pragma once

#include <type_traits>

namespace qm {

template <typename Group>
class UsesOne {
public:
    explicit UsesOne(Group& group) : m_group(&group) {}

    operator Group&() const { return *m_group; }  // implicit, so that a part's references are made of it

private:
    Group* m_group;
};

template <typename... Groups>
class Uses : public UsesOne<Groups>... {
public:
    template <typename Whole>
    requires(!std::is_same_v<std::remove_const_t<Whole>, Uses> && (std::is_convertible_v<Whole&, Groups&> && ...))
        Uses(Whole& whole)
        : UsesOne<Groups>(static_cast<Groups&>(whole))... {}
};

}  // namespace qm
