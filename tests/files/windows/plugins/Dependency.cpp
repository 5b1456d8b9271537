extern "C" __declspec(dllexport) unsigned int DependencyClass()
{
    return 'VTND';
}
