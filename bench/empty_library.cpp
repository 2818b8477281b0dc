void NothingToDo() {}
