// BAPP_Arguments and its iterator: the parts that change the list.
#include <PlumvaleBaseCore/app/BAPP_Arguments.h>

void BAPP_Arguments::erase(int i) {
    if (i < size()) m_list.removeAt(i);
}

BAPP_ArgumentIterator BAPP_Arguments::begin() {
    return BAPP_ArgumentIterator(this, 0);
}

BAPP_ArgumentIterator BAPP_Arguments::end() {
    return BAPP_ArgumentIterator(this, size());
}

void BAPP_ArgumentIterator::handled(int n) {
    for (int k = 0; k < n; ++k)
        m_arguments->erase(m_index);
}
