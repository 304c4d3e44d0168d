#pragma once

namespace NUX_ChainHelper {

class chain_node;

// The link to the next node.
class pointer_chain_pNext
{
public:
    chain_node* get_pNext() const { return m_pNext; }
    void set_pNext(chain_node* node) { m_pNext = node; }

private:
    chain_node* m_pNext = nullptr;
};

// The link to the previous node; it holds the place of that node's own link of this kind.
class pointer_chain_pPrev
{
public:
    inline chain_node* get_pPrev() const;
    inline void set_pPrev(chain_node* node);

private:
    pointer_chain_pPrev* m_pPrev = nullptr;
};

// The two links of a node, the next one first.
class chain_node : public pointer_chain_pNext, public pointer_chain_pPrev
{
public:
    // Links this node in front of `place`.
    void link_before(chain_node* place)
    {
        set_pNext(place);
        set_pPrev(place->get_pPrev());
        get_pPrev()->set_pNext(this);
        place->set_pPrev(this);
    }

    // Takes this node out of its chain.
    void unlink()
    {
        get_pPrev()->set_pNext(get_pNext());
        get_pNext()->set_pPrev(get_pPrev());
    }
};

inline chain_node* pointer_chain_pPrev::get_pPrev() const
{
    return static_cast<chain_node*>(m_pPrev);
}

inline void pointer_chain_pPrev::set_pPrev(chain_node* node)
{
    m_pPrev = node;
}

} // namespace NUX_ChainHelper
