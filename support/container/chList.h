#pragma once

#include "support/container/chAlloc.h"
#include "support/container/chChain.h"

#include <cstdint>
#include <iterator>

namespace NUX_ListHelper {

using NUX_ChainHelper::chain_node;

// The two links, then the value.
template <class T>
struct list_node_pointer : chain_node
{
    using value_type = T;

    template <class VALUE>
    explicit list_node_pointer(VALUE&& value) : m_value(std::forward<VALUE>(value))
    {
    }

    T m_value;
};

// A place in a list: a node, or the sentinel behind the last one. Valid until its node is removed.
template <class T, class VALUE>
class list_iterator
{
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = VALUE*;
    using reference = VALUE&;

    list_iterator() = default;
    explicit list_iterator(chain_node* node) : m_pThisNode(node) {}
    // A place to read from is also given by one to write to.
    template <class OTHER, class = std::enable_if_t<std::is_same_v<const OTHER, VALUE>>>
    list_iterator(const list_iterator<T, OTHER>& other) : m_pThisNode(other.m_pThisNode)
    {
    }

    VALUE& operator*() const
    {
        if (!has_node())
            return NUX_AllocHelper::chSpareObject<T>();
        return static_cast<list_node_pointer<T>*>(m_pThisNode)->m_value;
    }
    VALUE* operator->() const { return &**this; }
    list_iterator& operator++()
    {
        if (has_node())
            m_pThisNode = m_pThisNode->get_pNext();
        return *this;
    }
    list_iterator& operator--()
    {
        if (has_node())
            m_pThisNode = m_pThisNode->get_pPrev();
        return *this;
    }
    list_iterator operator++(int)
    {
        list_iterator before = *this;
        ++*this;
        return before;
    }
    list_iterator operator--(int)
    {
        list_iterator before = *this;
        --*this;
        return before;
    }
    friend bool operator==(list_iterator left, list_iterator right)
    {
        return left.m_pThisNode == right.m_pThisNode;
    }
    friend bool operator!=(list_iterator left, list_iterator right) { return !(left == right); }

    chain_node* m_pThisNode = nullptr;

private:
    bool has_node() const
    {
        const list_iterator& it = *this;
        return NUX_ASSERT(it.m_pThisNode != nullptr, "it.m_pThisNode != NULL");
    }
};

// A doubly linked ring through a sentinel inside the list; ALLOC is where its nodes come from.
template <class ALLOC>
class chMeth_List : public ALLOC
{
    using node_type = typename ALLOC::node_type;

public:
    using value_type = typename node_type::value_type;
    using size_type = int;
    using reference = value_type&;
    using const_reference = const value_type&;
    using iterator = list_iterator<value_type, value_type>;
    using const_iterator = list_iterator<value_type, const value_type>;

    chMeth_List() { close_ring(); }
    // Copies are deep.
    chMeth_List(const chMeth_List& other) : ALLOC()
    {
        close_ring();
        append_all(other);
    }
    chMeth_List& operator=(const chMeth_List& other)
    {
        if (this == &other)
            return *this;
        clear();
        append_all(other);
        return *this;
    }
    ~chMeth_List() { clear(); }

    int size() const { return count; }
    bool empty() const { return count == 0; }

    iterator begin() { return iterator(m_sentinel.get_pNext()); }
    iterator end() { return iterator(&m_sentinel); }
    const_iterator begin() const { return const_iterator(m_sentinel.get_pNext()); }
    const_iterator end() const { return const_iterator(const_cast<chain_node*>(&m_sentinel)); }

    // The first and the last value of a list that is not empty.
    reference front() { return value_at(m_sentinel.get_pNext()); }
    const_reference front() const { return value_at(m_sentinel.get_pNext()); }
    reference back() { return value_at(m_sentinel.get_pPrev()); }
    const_reference back() const { return value_at(m_sentinel.get_pPrev()); }

    // Where the new value is; the end when memory is out.
    template <class VALUE>
    iterator append(VALUE&& value)
    {
        node_type* node = this->borrow_node();
        if (!node)
            return end();
        new (node) node_type(std::forward<VALUE>(value));
        node->link_before(&m_sentinel);
        ++count;
        return iterator(node);
    }
    void push_back(const value_type& value) { append(value); }
    void push_back(value_type&& value) { append(std::move(value)); }

    void pop_front()
    {
        if (not_empty())
            remove(m_sentinel.get_pNext());
    }
    void pop_back()
    {
        if (not_empty())
            remove(m_sentinel.get_pPrev());
    }
    // Removes the value at `it` and returns the place behind it.
    iterator erase(iterator it)
    {
        if (!NUX_ASSERT(it.m_pThisNode != nullptr, "it.m_pThisNode != NULL") || !not_empty() ||
            !NUX_ASSERT(it != end(), "it != end()"))
            return end();
        iterator next(it.m_pThisNode->get_pNext());
        remove(it.m_pThisNode);
        return next;
    }
    // From the head on.
    void clear()
    {
        while (!empty())
            remove(m_sentinel.get_pNext());
    }

    // How many values there are; only the list itself writes it.
    int32_t count = 0;

private:
    bool not_empty() const { return NUX_ASSERT(!empty(), "!empty()"); }
    reference value_at(chain_node* place) const
    {
        return not_empty() ? *iterator(place) : NUX_AllocHelper::chSpareObject<value_type>();
    }

    void close_ring()
    {
        m_sentinel.set_pNext(&m_sentinel);
        m_sentinel.set_pPrev(&m_sentinel);
    }

    void append_all(const chMeth_List& other)
    {
        for (const value_type& value : other)
            append(value);
    }

    // The value is destroyed last: its destructor finds the list without it.
    void remove(chain_node* place)
    {
        node_type* node = static_cast<node_type*>(place);
        node->unlink();
        --count;
        node->~node_type();
        this->return_node(node);
    }

    chain_node m_sentinel;
};

template <class T, int N>
class chObjList_dynamic : public chMeth_List<NUX_AllocHelper::chAlloc_Node_dynamic<list_node_pointer<T>, N>>
{
};

} // namespace NUX_ListHelper

using NUX_ListHelper::chObjList_dynamic;
